// The editing window's border: flat light grey, raised outside, sunken inside, notches near the corners,
// the same whether the window is active or not and whatever the system's colours are.
#pragma once

#include <windows.h>

// Draws the caption as the system does it (active or not) and the border over it.
void paintFrame(HWND dialog);

// WM_NCACTIVATE: the default handling draws the system's own border together with the caption, so ours
// is painted over it at once.
void activateFrame(HWND dialog, WPARAM active);
