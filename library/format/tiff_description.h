// What the first directory of a selection file says (see tiff_layout.h), in either byte order.
#pragma once

#include "library/format/byte_source.h"
#include "library/format/tiff_layout.h"

struct SelectionDescription {
    int width, height;  // at least 1; width x height x 3 is no more than the file's length
    int32_t xPelsPerMetre, yPelsPerMetre;
    uint64_t pixelOffset;  // 64 bits: they may lie beyond the file's end
    uint64_t maskOffset;
    uint64_t thumbnailOffset;
};

// False for anything that is no selection file, and when the pixels do not lie inside the file.
bool readSelectionDescription(const ByteSource& source, SelectionDescription* description);
