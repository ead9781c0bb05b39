// How a "Bouton" looks, by kind and state.
#pragma once

#include <windows.h>

// Group boxes and owner-drawn buttons are left to the system.
bool drawnBySystem(LONG style);

// Draws the control's whole client area (a DrawWindow).
void drawButton(HWND window, HDC dc, const RECT& client);
