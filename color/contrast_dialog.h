// The contrast dialog, as the palette sees it. Not built yet: nothing opens.
#pragma once

#include <windows.h>

// Opens the dialog modally beside the palette's button and returns when it closes.
void openContrastDialog(HWND palette, int buttonId);
