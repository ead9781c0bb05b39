// The blur of a stretch of pixels in one line, from three unfiltered lines.
#pragma once

#include <cstdint>

// Each pointer is at the stretch's first pixel; of the three lines one more pixel is read on either side.
struct SmoothSource {
    const uint8_t *above, *line, *below;
};

// `count` pixels, 1 or more, become the rounded binomial mean of their 3 x 3 neighbours, mixed with
// `opacity` percent over the pixel of `line`. `pixels` overlaps none of the three lines.
void smoothPixels(uint8_t* pixels, const SmoothSource& source, int count, int opacity);

// The plain way to the same bytes.
void smoothPixelsPlain(uint8_t* pixels, const SmoothSource& source, int count, int opacity);
