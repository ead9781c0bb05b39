// The first page of a TIFF file: how its pixels lie, what it tells, and its rows as they are seen.
#pragma once

#include "host/codecs/photo_codec.h"

#include <tiffio.h>

// How the first page's pixels lie in the file.
struct TiffLayout {
    uint32_t width = 0, height = 0;
    uint16_t bits = 1, samples = 1, photometric = 0, compression = 1, planar = 1, format = 1, orientation = 1;
    uint16_t alphaKind = 0;  // EXTRASAMPLE_..., when there is alpha
    bool alpha = false;
};
TiffLayout tiffLayout(TIFF* file);

// mode as for TIFFOpen. Null when it is no sound TIFF file; nothing is said on the console.
TIFF* openTiff(const wchar_t* path, const char* mode);

// Hands over the first page in bands. Rows are already laid over white.
PhotoStatus eachTiffBand(TIFF* file, const PhotoFacts& facts, const RowSink& sink);

void collectTiffFacts(TIFF* file, PhotoFacts* facts);

// A kind of pixels whose samples can be changed one by one without touching others.
bool canEditSamples(const TiffLayout& layout);
