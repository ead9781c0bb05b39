// The directories of a TIFF file as bytes, for what no library offers: a page that changes its size and keeps all else
// that is told of it, known or not.
#pragma once

#include <cstdint>
#include <cstdio>

// Whether the list of pages has an end: one that leads back to itself would be followed for ever.
bool pagesEnd(FILE* file);

// The last page of the file has the first one's pixels, upright. It becomes the first one, with the other entries of
// that, which is a page no more. sidesSwapped: width and height have changed places. False: the file is unsound.
bool putTurnedPageFirst(FILE* file, bool sidesSwapped);

// Clears a part of the file.
bool wipeBytes(FILE* file, uint64_t at, uint64_t size);
