// How hard a PNG file's rows are packed.
#pragma once

#include "host/codecs/photo_codec.h"

#include <png.h>

// Searching a photo for repeated bytes takes nine tenths of a save and finds none but runs; a drawing gets several
// times smaller by it. A few rows of the picture, packed in all ways, decide. Errors leave through the codec's jump.
void choosePngPacking(png_structp output, const EditedPhoto& photo, int depth);
