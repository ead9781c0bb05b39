// Bringing the blocks of a JPEG photo up to date with the edited picture: those in which no pixel differs from
// what the file shows stay as they are.
#pragma once

#include "host/codecs/color_bridge.h"
#include "host/codecs/jpeg_errors.h"

struct BlockEdit {
    int orientation = 1;
    ColorBridge bridge;
};

// blocks: input's, as jpeg_read_coefficients gave them. again: the same file, from its start. False when the
// picture cannot be stored in them: it has another size, or a grey photo has got colours. Errors jump as the
// input's own do.
bool updateBlocks(jpeg_decompress_struct* input, jvirt_barray_ptr* blocks, FILE* again, const EditedPhoto& photo,
                  BlockEdit* edit);
