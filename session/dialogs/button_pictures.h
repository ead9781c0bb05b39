#pragma once

#include <windows.h>

// Gives the buttons of a dialog their pictures from picture table `tableId`, at the size that suits each button.
// Entries without a control in the dialog are skipped. Returns 1, also when the table is missing.
int attachButtonPictures(HWND dialog, int tableId, HINSTANCE instance);

// Attaches the table only when the control library leaves the pictures to its callers.
void attachPicturesUnlessLibraryDoes(HWND dialog, int tableId, HINSTANCE instance);
