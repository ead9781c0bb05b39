#include "controls/caption_font.h"

constexpr int LONGEST_TEXT = 512;

static bool hasLetters(HDC dc, const wchar_t* text)
{
    WORD glyphs[LONGEST_TEXT];
    int length = lstrlenW(text);
    if (length > LONGEST_TEXT) length = LONGEST_TEXT;
    if (GetGlyphIndicesW(dc, text, length, glyphs, GGI_MARK_NONEXISTING_GLYPHS) == GDI_ERROR) return true;
    for (int i = 0; i < length; ++i)
        if (glyphs[i] == 0xFFFF) return false;
    return true;
}

static HFONT messageFont(LONG height)
{
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    if (!SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) return nullptr;
    metrics.lfMessageFont.lfHeight = height;
    return CreateFontIndirectW(&metrics.lfMessageFont);
}

CaptionFont selectCaptionFont(HDC dc, HWND control, const wchar_t* text)
{
    HGDIOBJ font = (HGDIOBJ)SendMessageW(control, WM_GETFONT, 0, 0);
    if (!font) font = GetStockObject(SYSTEM_FONT);
    CaptionFont selected = {SelectObject(dc, font), nullptr};
    LOGFONTW description;
    if (hasLetters(dc, text) || !GetObjectW(font, sizeof description, &description)) return selected;
    selected.made = messageFont(description.lfHeight);
    if (selected.made) SelectObject(dc, selected.made);
    return selected;
}

void restoreFont(HDC dc, const CaptionFont& font)
{
    SelectObject(dc, font.before);
    if (font.made) DeleteObject(font.made);
}
