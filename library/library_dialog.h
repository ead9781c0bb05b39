// The selections library's window: the stored selections as a column of thumbnails beside the palette.
#pragma once

#include <windows.h>

// Opens the window, if it is not open yet, and brings it to the top (show nonzero); or closes it.
void showLibraryDialog(int show, HWND owner);
