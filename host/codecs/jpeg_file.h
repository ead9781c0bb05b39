// JPEG files. A photo that comes from one and goes to one keeps every block that was not edited bit for bit,
// its quantisation tables, subsampling, progression and all its segments.
#pragma once

#include "host/codecs/photo_codec.h"

PhotoStatus readJpeg(FILE* file, const RowSink& sink, PhotoFacts* facts);

// original: the JPEG file the photo was read from, opened anew, or null; then `facts` tells what goes along.
// again: the same file opened once more (both are needed at once). The picture is written upright.
PhotoStatus writeJpeg(FILE* output, const EditedPhoto& photo, const PhotoFacts& facts, FILE* original, FILE* again);

// The longest side that the format can say.
constexpr int JPEG_LONGEST_SIDE = 65500;
