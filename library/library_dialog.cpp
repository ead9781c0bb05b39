#include "library/library_dialog.h"

void showLibraryDialog(int, HWND) {}
