// What the client area of a window shows on the screen.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

// One 0x00RRGGBB a pixel, rows from the top.
std::vector<uint32_t> clientScreen(HWND window);

// Paints what is invalid, then everything: true when that makes no difference on the screen.
bool showsWhatARepaintShows(HWND window);
