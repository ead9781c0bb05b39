// Reads selection files (see tiff_layout.h), of either byte order, without trusting a byte of them.
//
// Only the first directory is read; mask and thumbnail are looked for where the layout puts them. Every
// size and offset is checked against the file's length, in 64 bits, before anything is asked for by it,
// and the work is bounded by the file's length, whatever the file says.
#pragma once

#include "image/pixels/bits_view.h"
#include "library/format/tiff_layout.h"

// A file of which any piece can be read.
struct ByteSource {
    uint64_t size;  // bytes in the file
    // Reads exactly `count` bytes at `offset`; both lie inside `size`. False when that fails.
    bool (*read)(void* context, uint64_t offset, void* bytes, uint32_t count);
    void* context;
};

// What the first directory says.
struct SelectionDescription {
    int width, height;  // at least 1; width x height x 3 is no more than the file's length
    int32_t xPelsPerMetre, yPelsPerMetre;
    uint64_t pixelOffset;  // 64 bits: they may lie beyond the file's end
    uint64_t maskOffset;
    uint64_t thumbnailOffset;
};

// False for anything that is no selection file, and when the pixels do not lie inside the file.
bool readSelectionDescription(const ByteSource& source, SelectionDescription* description);

// Fill an image that the caller has made: 40 by 30 for the thumbnail, width by height for the others.
// False when the bytes are not all inside the file or cannot be read; the image then holds a part.
bool readThumbnailPixels(const ByteSource& source, const SelectionDescription& description, const BitsView& thumbnail);
bool readSelectionPixels(const ByteSource& source, const SelectionDescription& description, const BitsView& image);
bool readSelectionMaskPixels(const ByteSource& source, const SelectionDescription& description, const BitsView& mask);

// Whether the mask lies inside the file; worth asking before memory for it is asked for.
bool hasMaskBytes(const ByteSource& source, const SelectionDescription& description);
