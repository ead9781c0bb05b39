// The keyboard's way through a dialog whose message loop does no dialog navigation.
#pragma once

#include <windows.h>

// Handles a key pressed on a control: Tab and Shift+Tab go to the next and the previous tab stop; with `group` the
// arrow keys go round the control's group. The focus moves, nothing is pressed, and it is shown from now on. False:
// the key is the control's own.
bool walkByKey(HWND control, WPARAM key, bool group);
