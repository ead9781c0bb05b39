// The colour rules written down as plainly as possible, to hold the library's own code against. Shares
// nothing with it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

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

// Rows as they are stored, the bottom row first, each padded to 4 bytes.
struct Image {
    int width, height;
    std::vector<uint8_t> bytes;
};

int strideOf(int width);

// The whole image, padding included.
Image adjustImage(const Image& image, const Values& values);

void adjustSelection(const Image& source, const Image& sourceMask, Image& target, Image& targetMask,
                     const Values& values);

typedef std::vector<std::vector<int>> Crossings;  // per image row, entry and exit in turn

struct Rect {
    int left, top, right, bottom;
};

void reshapeSpans(const Image& source, const Image& sourceMask, Image& target, Image& targetMask,
                  const Crossings& sourceCrossings, Rect sourceRect, const Crossings& targetCrossings, Rect targetRect);

}  // namespace reference
