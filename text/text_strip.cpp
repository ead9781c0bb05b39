#include "text/text_strip.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "canvas/view/canvas_coordinates.h"
#include "image/made_bitmap.h"
#include "image/pixels/scarce_memory.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "text/kernels/text_stamp.h"

constexpr UINT CODE_PAGE_GB18030 = 54936;

static SIZE stripSize()
{
    BITMAP info = {};
    GetObjectA(session->textStrip, sizeof info, &info);
    return {info.bmWidth, info.bmHeight};
}

// A memory device context with the font, and the strip when one is wanted. False, and dc is null, unless all of
// it is there.
struct TextContext {
    explicit TextContext(HBITMAP bitmap = nullptr) : dc(CreateCompatibleDC(nullptr))
    {
        if (!dc) return;
        oldFont = session->textFontHandle ? SelectObject(dc, session->textFontHandle) : nullptr;
        oldBitmap = bitmap && oldFont ? SelectObject(dc, bitmap) : nullptr;
        if (!oldFont || (bitmap && !oldBitmap)) close();
    }
    ~TextContext()
    {
        if (dc) close();
    }
    TextContext(const TextContext&) = delete;
    TextContext& operator=(const TextContext&) = delete;
    explicit operator bool() const { return dc != nullptr; }

    void close()
    {
        if (oldFont) SelectObject(dc, oldFont);
        if (oldBitmap) SelectObject(dc, oldBitmap);
        DeleteDC(dc);
        dc = nullptr;
    }

    HDC dc;
    HGDIOBJ oldFont = nullptr, oldBitmap = nullptr;
};

static bool copyStripBits(const LockedPixels& pixels, SIZE size)
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
static HGLOBAL stripPixels()
{
    const SIZE size = stripSize();
    return makePixels(size.cx, size.cy, [&](const LockedPixels& pixels) { return copyStripBits(pixels, size); });
}

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
    const TextContext context;
    if (!context || !DrawTextA(context.dc, text, count, &extent, DT_CALCRECT)) return -1;
    return extent.right;
}

// The code page of the font's script. A system with a code page of longer characters draws that one's with Western
// fonts, too.
static UINT textCodePage()
{
    const TextContext context;
    const int script = context ? GetTextCharset(context.dc) : ANSI_CHARSET;
    CHARSETINFO found = {};
    const bool own = script != ANSI_CHARSET && TranslateCharsetInfo((DWORD*)(DWORD_PTR)script, &found, TCI_SRCCHARSET);
    return own ? found.ciACP : GetACP();
}

LeadBytes textLeadBytes()
{
    LeadBytes leads = {};
    const UINT page = textCodePage();
    leads.form = page == CP_UTF8 ? UTF_8 : page == CODE_PAGE_GB18030 ? GB_18030 : UP_TO_TWO_BYTES;
    CPINFO codePage = {};
    static_assert(sizeof codePage.LeadByte == sizeof leads.ranges);
    if (GetCPInfo(page, &codePage)) memcpy(leads.ranges, codePage.LeadByte, sizeof leads.ranges);
    return leads;
}

bool renderTextStrip(const char* text)
{
    const TextContext context(session->textStrip);
    if (!context) return false;
    const SIZE size = stripSize();
    RECT all = {0, 0, size.cx, size.cy};
    if (!FillRect(context.dc, &all, (HBRUSH)GetStockObject(BLACK_BRUSH))) return false;
    SetTextColor(context.dc, RGB(255, 255, 255));
    SetBkMode(context.dc, TRANSPARENT);
    all.left = session->textOriginX;
    // No format flags: an ampersand underlines the next letter, as the system does it.
    return DrawTextA(context.dc, text, -1, &all, 0) || !*text;
}

void drawTextStrip(HDC dc)
{
    const SIZE size = stripSize();
    const TextContext strip(session->textStrip);
    if (strip) {
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
}

static void showOnesOfStrip(const ViewPicture& picture, const uint8_t* bits, SIZE size, int firstRow)
{
    const MonoView ones = {bits, (int)(size.cx + 31) / 32 * 4, (int)size.cx, (int)size.cy};
    showOnes(picture, sessionExtras.canvas.view, ones, {0, session->textOriginY + firstRow},
             rgbFromColorref(session->paintColour));
}

// Only the rows that the picture shows.
void showTextStrip(const ViewPicture& picture)
{
    const PixelPoint corner = picture.corner;
    const PixelRect seen = imageCover(sessionExtras.canvas.view, {corner.x, corner.y, corner.x + picture.pixels.width,
                                                                  corner.y + picture.pixels.height});
    const SIZE size = stripSize();
    const int first = std::max(0, seen.top - session->textOriginY);
    const int count = std::min((int)size.cy, seen.bottom - session->textOriginY) - first;
    if (count < 1) return;
    struct {
        BITMAPINFOHEADER header;
        RGBQUAD colours[2];
    } info = {{sizeof info.header, size.cx, -count, 1, 1, BI_RGB, 0, 0, 0, 0, 0}, {}};
    void* const bits = takeZeroedMemory((size_t)count, (size_t)(size.cx + 31) / 32 * 4);
    const HDC dc = bits ? CreateCompatibleDC(nullptr) : nullptr;
    // The rows of a strip are counted from the bottom.
    if (dc && GetDIBits(dc, session->textStrip, (UINT)(size.cy - first - count), (UINT)count, bits, (BITMAPINFO*)&info,
                        DIB_RGB_COLORS)) {
        showOnesOfStrip(picture, (const uint8_t*)bits, {size.cx, count}, first);
    }
    if (dc) DeleteDC(dc);
    free(bits);
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
