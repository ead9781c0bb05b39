// Keeping the editing window's client area in the proportions that it had at the start.
//
// All arithmetic is unsigned 32-bit: product first, then a truncating division.
#pragma once

#include <cstdint>

struct AspectRatio {
    uint32_t width, height;            // client size fixed at the start; 0 in either = 640 x 480
    uint32_t frameWidth, frameHeight;  // what the frame adds to the client area
};

// Window height that belongs to a window width, and the other way round.
uint32_t heightForWidth(const AspectRatio& ratio, uint32_t windowWidth);
uint32_t widthForHeight(const AspectRatio& ratio, uint32_t windowHeight);

struct WindowSize {
    uint32_t width, height;
};

// The size that a proposed size becomes, seen from the current one: the changed side drives the other;
// when both changed, the height drives if `heightDrives`, else the width. No change: as proposed.
WindowSize keepAspect(const AspectRatio& ratio, WindowSize current, WindowSize proposed, bool heightDrives);

// Cuts a size to the screen's width, then to its height, keeping the ratio.
WindowSize cutToScreen(const AspectRatio& ratio, WindowSize size, uint32_t screenWidth, uint32_t screenHeight);
