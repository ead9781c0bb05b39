// Writes the bytes of a selection file (see tiff_layout.h) in their order.
#pragma once

#include "image/pixels/bits_view.h"
#include "library/format/tiff_layout.h"

// Takes the next bytes of the file; false stops the writing.
struct ByteSink {
    bool (*write)(void* context, const void* bytes, uint32_t count);
    void* context;
};

struct Resolution {
    int32_t x, y;  // pixels per metre
};

// What a file is made from. Image and mask have the same size.
struct SelectionImages {
    BitsView image;
    BitsView mask;
    Resolution imageResolution;
    Resolution maskResolution;  // the thumbnail's too
};

// True when every byte was taken. False also when the size cannot be written or memory is short; then
// nothing or only a beginning has been written.
bool writeSelectionImages(const ByteSink& sink, const SelectionImages& selection);
