// The bitmap rules done the slow and obvious way, one pixel at a time on vectors, to compare against.
// Rows count from the top. Shares no code with the library.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "tests/reference/picture.h"

reference::Picture randomReference(std::mt19937& random, int width, int height);

// An image of random runs of black and white.
reference::Picture randomMask(std::mt19937& random, int width, int height);

// Follows the stepwise rule for an extracted rectangle; an image of 0 by 0 stands for a failure.
reference::Picture referenceExtract(const reference::Picture& image, int left, int top, int right, int bottom);

// False when nothing of the source lies inside. The source's horizontal skip is in bytes.
bool referencePaste(reference::Picture& destination, const reference::Picture& source, int left, int top);

void referencePasteMasked(reference::Picture& destination, const reference::Picture& source,
                          const reference::Picture& mask, int left, int top);
reference::Picture referenceFlipVertical(const reference::Picture& image);
reference::Picture referenceFlipHorizontal(const reference::Picture& image);

// The index table of nearest-neighbour scaling in 16-bit arithmetic; sizes up to 8192.
std::vector<int16_t> referenceNearestTable(int from, int to);
reference::Picture referenceScale(const reference::Picture& source, int width, int height);
