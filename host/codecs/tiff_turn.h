// Making the first page of a TIFF file upright, with everything that the file has.
#pragma once

#include "host/codecs/tiff_pieces.h"

// output: a copy of the original, a file with samples that can be edited. Its first page is written once more, edited
// and upright, and takes the place of the old one, whose pixels are wiped; all else of the file stays.
PhotoStatus turnTiffPage(const wchar_t* output, const wchar_t* original, const PhotoFacts& facts,
                         const Changes& changes);
