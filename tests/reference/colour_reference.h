// The colour rules written down as plainly as possible, to hold the library's own code against. Shares
// nothing with it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tests/reference/picture.h"

namespace reference {

struct Hls {
    int hue, lightness, saturation;
};

struct Colour {
    int red, green, blue;
};

struct Values {
    int contrast, brightness, saturation, hue, lift;
};

int toneValue(int input, int a, int b);
Hls hlsFromRgb(Colour colour);
Colour rgbFromHls(Hls hls);

Colour adjustedForImage(Colour colour, const Values& values);
Colour adjustedForSelection(Colour colour, const Values& values);  // lift included

// The whole image, padding included.
StoredPicture adjustImage(const StoredPicture& image, const Values& values);

void adjustSelection(const StoredPicture& source, const StoredPicture& sourceMask, StoredPicture& target,
                     StoredPicture& targetMask, const Values& values);

typedef std::vector<std::vector<int>> Crossings;  // per image row, entry and exit in turn

struct Rect {
    int left, top, right, bottom;
};

void reshapeSpans(const StoredPicture& source, const StoredPicture& sourceMask, StoredPicture& target,
                  StoredPicture& targetMask, const Crossings& sourceCrossings, Rect sourceRect,
                  const Crossings& targetCrossings, Rect targetRect);

}  // namespace reference
