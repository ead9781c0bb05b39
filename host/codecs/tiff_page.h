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

// Facts, shape and rows of the first page.
PhotoStatus readTiffPage(TIFF* file, const RowSink& sink, PhotoFacts* facts);

// Hands over the first page in bands. Rows are already laid over white.
PhotoStatus eachTiffBand(TIFF* file, const PhotoFacts& facts, const RowSink& sink);

void collectTiffFacts(TIFF* file, PhotoFacts* facts);

// A kind of pixels whose samples can be changed one by one without touching others.
bool canEditSamples(const TiffLayout& layout);
