// The contrast dialog: contrast, brightness, saturation and hue of the whole image, with a preview.
#pragma once

#include <windows.h>

constexpr WCHAR CONTRAST_TEMPLATE[] = L"ENDLGRTCH_CONTRAST";  // the English one

// Opens the dialog modally beside the palette's button and returns when it closes; the host dialog and
// the selections library are disabled meanwhile. OK adjusts the image in place and makes the result the
// session's new original; no undo step is kept. Cancel changes nothing.
void openContrastDialog(HWND palette, int buttonId);
