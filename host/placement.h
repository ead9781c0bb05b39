// Where the editing window and its tool palette go on the screen. All in pixels; right and bottom are
// one past the last pixel.
#pragma once

struct ScreenBox {
    int left, top, right, bottom;
};

struct ScreenSize {
    int width, height;
};

struct Placement {
    ScreenBox dialog;  // frame included
    int paletteLeft, paletteTop;
};

// The client size for an image: its own size when that fits into room, else scaled down to fit, the
// aspect kept. Images whose longer side is under 320 pixels are enlarged by a whole factor, at most 8,
// as far as the longer side stays within 320 and room. At least 1 by 1.
ScreenSize clientSizeFor(ScreenSize image, ScreenSize room);

// Palette and window side by side, the palette left of the window, both centred in workArea.
// frame: what the window's frame adds to its client area; palette: the palette's outer size.
Placement placeWindows(ScreenSize image, ScreenBox workArea, ScreenSize frame, ScreenSize palette);
