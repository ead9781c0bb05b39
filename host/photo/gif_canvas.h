// Where the first picture of a GIF file lies on the file's canvas.
#pragma once

#include <cstddef>
#include <cstdint>

struct GifCanvas {
    int width, height;
    int left = 0, top = 0;  // of the picture, which lies inside
};

// head: the start of any file. When it is no GIF file, or the picture would not lie inside, the canvas is as
// large as the picture, width by height.
GifCanvas gifCanvas(const uint8_t* head, size_t size, int width, int height);
