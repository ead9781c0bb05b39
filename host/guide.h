// The guide for the user, and what the program says of itself.
#pragma once

#include <windows.h>

void openGuide(HWND owner);
void showAbout(HWND owner);
