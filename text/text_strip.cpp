#include "text/text_strip.h"

#include <cstdlib>
#include <cstring>

#include "image/made_bitmap.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "text/kernels/text_stamp.h"

namespace {

SIZE stripSize()
{
    BITMAP info = {};
    GetObjectA(session->textStrip, sizeof info, &info);
    return {info.bmWidth, info.bmHeight};
}

// A memory device context with the font, and the strip when one is wanted.
struct TextContext {
    HDC dc;
    HGDIOBJ oldFont, oldBitmap;
};

TextContext openContext(HBITMAP bitmap)
{
    TextContext context = {CreateCompatibleDC(nullptr), nullptr, nullptr};
    if (!context.dc) return context;
    context.oldFont = SelectObject(context.dc, session->textFontHandle);
    if (bitmap) context.oldBitmap = SelectObject(context.dc, bitmap);
    return context;
}

void closeContext(const TextContext& context)
{
    if (!context.dc) return;
    SelectObject(context.dc, context.oldFont);
    if (context.oldBitmap) SelectObject(context.dc, context.oldBitmap);
    DeleteDC(context.dc);
}

bool copyStripBits(const LockedPixels& pixels, SIZE size)
{
    BITMAPINFO info = {};
    initBitmapHeader(&info.bmiHeader, size.cx, size.cy, 24);
    BYTE* const bits = (BYTE*)(pixels.header() + 1);
    const HDC dc = CreateCompatibleDC(nullptr);
    if (!dc) return false;
    const int rows = GetDIBits(dc, session->textStrip, 0, (UINT)size.cy, bits, &info, DIB_RGB_COLORS);
    DeleteDC(dc);
    return rows == size.cy;
}

// The strip as a 24-bit bitmap; the caller frees it. Null on failure.
HGLOBAL stripPixels()
{
    const SIZE size = stripSize();
    return makePixels(size.cx, size.cy, [&](const LockedPixels& pixels) { return copyStripBits(pixels, size); });
}

}  // namespace

void createTextFont()
{
    if (session->textFontHandle) DeleteObject(session->textFontHandle);
    session->textFont.lfHeight = (LONG)session->brushHeight;
    LOGFONTA font = session->textFont;
    // Letters are typed in the system's code page. A font without a choice of script would take their bytes
    // for Western ones and show accents where, say, Cyrillic was typed.
    if (font.lfCharSet == ANSI_CHARSET) font.lfCharSet = DEFAULT_CHARSET;
    session->textFontHandle = CreateFontIndirectA(&font);
}

bool createTextStrip(int imageWidth)
{
    createTextFont();
    if (session->textStrip) DeleteObject(session->textStrip);
    session->textStrip = CreateBitmap(imageWidth, textLineHeight(), 1, 1, nullptr);
    return session->textFontHandle && session->textStrip;
}

void freeTextStrip()
{
    if (session->textFontHandle) DeleteObject(session->textFontHandle);
    if (session->textStrip) DeleteObject(session->textStrip);
    session->textFontHandle = nullptr;
    session->textStrip = nullptr;
}

int textLineHeight()
{
    return abs((int)session->textFont.lfHeight);
}

int measureText(const char* text, int count)
{
    if (count <= 0) return 0;
    RECT extent = {0, 0, 0, 0};
    const TextContext context = openContext(nullptr);
    if (context.dc) DrawTextA(context.dc, text, count, &extent, DT_CALCRECT);
    closeContext(context);
    return extent.right;
}

LeadBytes textLeadBytes()
{
    LeadBytes leads = {};
    const TextContext context = openContext(nullptr);
    const int script = context.dc ? GetTextCharset(context.dc) : ANSI_CHARSET;
    closeContext(context);
    // A system with a double-byte code page draws that one's characters with Western fonts, too.
    CHARSETINFO found = {};
    const bool own = script != ANSI_CHARSET && TranslateCharsetInfo((DWORD*)(DWORD_PTR)script, &found, TCI_SRCCHARSET);
    CPINFO codePage = {};
    static_assert(sizeof codePage.LeadByte == sizeof leads.ranges);
    if (GetCPInfo(own ? found.ciACP : CP_ACP, &codePage)) memcpy(leads.ranges, codePage.LeadByte, sizeof leads.ranges);
    return leads;
}

void renderTextStrip(const char* text)
{
    const TextContext context = openContext(session->textStrip);
    if (context.dc) {
        const SIZE size = stripSize();
        RECT all = {0, 0, size.cx, size.cy};
        FillRect(context.dc, &all, (HBRUSH)GetStockObject(BLACK_BRUSH));
        SetTextColor(context.dc, RGB(255, 255, 255));
        SetBkMode(context.dc, TRANSPARENT);
        all.left = session->textOriginX;
        // No format flags: an ampersand underlines the next letter, as the system does it.
        DrawTextA(context.dc, text, -1, &all, 0);
    }
    closeContext(context);
}

void drawTextStrip(HDC dc)
{
    const SIZE size = stripSize();
    const TextContext strip = openContext(session->textStrip);
    if (strip.dc) {
        const int saved = SaveDC(dc);
        SetStretchBltMode(dc, COLORONCOLOR);
        // A 1-bit source shows its ones in the background colour and its zeros in the text colour.
        SetTextColor(dc, RGB(255, 255, 255));
        SetBkColor(dc, RGB(0, 0, 0));
        BitBlt(dc, 0, session->textOriginY, size.cx, size.cy, strip.dc, 0, 0, SRCAND);
        SetTextColor(dc, RGB(0, 0, 0));
        SetBkColor(dc, session->paintColour);
        BitBlt(dc, 0, session->textOriginY, size.cx, size.cy, strip.dc, 0, 0, SRCPAINT);
        RestoreDC(dc, saved);
    }
    closeContext(strip);
}

static bool stampPixels(HGLOBAL pixels)
{
    const LockedPixels strip(pixels), image(editedImage());
    if (!strip || !image) return false;
    stampText(image.view, strip.view, session->textOriginY, rgbFromColorref(session->paintColour),
              (int)session->opacity);
    return true;
}

bool stampTextStrip()
{
    const HGLOBAL pixels = stripPixels();
    const bool stamped = stampPixels(pixels);
    if (pixels) GlobalFree(pixels);
    return stamped;
}

RECT textStripRect()
{
    const SIZE size = stripSize();
    return {0, session->textOriginY, size.cx, session->textOriginY + size.cy};
}
