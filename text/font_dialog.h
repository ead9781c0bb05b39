// The system's font dialog: font, height and colour of the text.
#pragma once

#include <windows.h>

// An open line of text is discarded. Nothing changes unless the user chooses.
void chooseTextFont(HWND palette);
