#include "host/host_face.h"

#include "host/locked_photo.h"
#include "host/placement.h"

#include <algorithm>

// In heights of a line of text.
constexpr int PANEL_WIDTH = 26, PANEL_BORDER = 2;

static int lineHeight(HFONT font)
{
    LOGFONTW description = {};
    GetObjectW(font, sizeof description, &description);
    return std::max(std::abs((int)description.lfHeight), 8) * 4 / 3;
}

static SIZE sizeOfText(HFONT font, const std::wstring& text, int width)
{
    HDC screen = GetDC(nullptr);
    HGDIOBJ before = SelectObject(screen, font);
    RECT box = {0, 0, width, 0};
    DrawTextW(screen, text.c_str(), -1, &box, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX | DT_EDITCONTROL);
    SelectObject(screen, before);
    ReleaseDC(nullptr, screen);
    return {box.right, box.bottom};
}

struct Panel {
    RECT box, text, bar;
};

static Panel panelOf(const HostFace& face, const RECT& client)
{
    const RECT room = roomAboveStatus(face, client);
    const int line = lineHeight(face.largeFont), border = PANEL_BORDER * line;
    const int most = std::max((int)(room.right - room.left) - 2 * border, 1);
    const SIZE text = sizeOfText(face.largeFont, face.panel, std::min(PANEL_WIDTH * line, most));
    const int width = face.bar ? std::max((int)text.cx, std::min(PANEL_WIDTH * line, most)) : (int)text.cx;
    const int height = text.cy + (face.bar ? 2 * line : 0);
    const int left = (room.left + room.right - width) / 2, top = (room.top + room.bottom - height) / 2;
    return {{left - border, top - border, left + width + border, top + height + border},
            {left, top, left + width, top + text.cy},
            {left, top + text.cy + line, left + width, top + height}};
}

static void paintPanel(const HostFace& face, HDC dc, const RECT& client)
{
    Panel panel = panelOf(face, client);
    FillRect(dc, &panel.box, GetSysColorBrush(COLOR_BTNFACE));
    DrawEdge(dc, &panel.box, EDGE_RAISED, BF_RECT);
    SelectObject(dc, face.largeFont);
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    DrawTextW(dc, face.panel.c_str(), -1, &panel.text, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX | DT_EDITCONTROL);
}

static void paintPicture(HGLOBAL picture, HDC dc, const RECT& room)
{
    const LockedPhoto locked(picture);
    const BITMAPINFO* info = (const BITMAPINFO*)locked.header;
    const int width = info->bmiHeader.biWidth, height = info->bmiHeader.biHeight;
    const ScreenSize size =
        clientSizeFor({width, height}, {(int)(room.right - room.left), (int)(room.bottom - room.top)});
    SetStretchBltMode(dc, HALFTONE);
    StretchDIBits(dc, (room.left + room.right - size.width) / 2, (room.top + room.bottom - size.height) / 2, size.width,
                  size.height, 0, 0, width, height, locked.bits(), info, DIB_RGB_COLORS, SRCCOPY);
}

static void paintStatus(const HostFace& face, HDC dc, const RECT& client)
{
    RECT strip = client;
    strip.top = roomAboveStatus(face, client).bottom;
    FillRect(dc, &strip, GetSysColorBrush(COLOR_BTNFACE));
    DrawEdge(dc, &strip, BDR_SUNKENOUTER, BF_TOP);
    InflateRect(&strip, -lineHeight(face.font) / 2, 0);
    SelectObject(dc, face.font);
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    const UINT format = DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS;
    DrawTextW(dc, face.waiting.c_str(), -1, &strip, format | DT_RIGHT);
    strip.right -= face.waiting.empty() ? 0 : sizeOfText(face.font, face.waiting + L"  ", 1 << 20).cx;
    DrawTextW(dc, face.status.c_str(), -1, &strip, format);
}

void renewFonts(HostFace* face)
{
    releaseFonts(face);
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    face->font = CreateFontIndirectW(&metrics.lfStatusFont);
    metrics.lfMessageFont.lfHeight = metrics.lfMessageFont.lfHeight * 4 / 3;
    face->largeFont = CreateFontIndirectW(&metrics.lfMessageFont);
}

void releaseFonts(HostFace* face)
{
    DeleteObject(face->font);
    DeleteObject(face->largeFont);
    face->font = face->largeFont = nullptr;
}

RECT roomAboveStatus(const HostFace& face, const RECT& client)
{
    RECT room = client;
    room.bottom = std::max(client.top, client.bottom - 2 * lineHeight(face.font));
    return room;
}

RECT placeOfBar(const HostFace& face, const RECT& client)
{
    return panelOf(face, client).bar;
}

void paintFace(const HostFace& face, HDC dc, const RECT& client)
{
    const int state = SaveDC(dc);
    SetBkMode(dc, TRANSPARENT);
    if (face.picture) {
        RECT room = roomAboveStatus(face, client);
        const int border = 2 * lineHeight(face.font);
        InflateRect(&room, -border, -border);
        if (room.right > room.left && room.bottom > room.top) paintPicture(face.picture, dc, room);
    }
    if (!face.panel.empty()) paintPanel(face, dc, client);
    paintStatus(face, dc, client);
    RestoreDC(dc, state);
}
