// The selections library's window, as the palette sees it. Not built yet: nothing opens.
#pragma once

#include <windows.h>

void showLibraryDialog(int show, HWND owner);
