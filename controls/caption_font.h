// The font in which a control draws its text.
#pragma once

#include <windows.h>

struct CaptionFont {
    HGDIOBJ before;  // what was selected
    HFONT made;      // null: the control's own
};

// Selects the control's font, or the system's message font in its size where the control's lacks letters of the
// text: old dialog fonts hold one script only, the system's are linked to fonts for all others.
CaptionFont selectCaptionFont(HDC dc, HWND control, const wchar_t* text);
void restoreFont(HDC dc, const CaptionFont& font);
