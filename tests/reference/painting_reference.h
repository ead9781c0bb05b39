// A second, deliberately simple telling of the painting tools, to hold the fast code against: plain
// pictures counted from the top, every value worked out anew for every pixel, no code shared with the
// library.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "tests/reference/picture.h"

namespace reference {

struct Grid {
    int width, height;
    std::vector<int> cells;  // top row first
    int& at(int x, int y) { return cells[(size_t)y * width + x]; }
    int at(int x, int y) const { return cells[(size_t)y * width + x]; }
};

enum Tool { BRUSH, SMOOTH, PATCH, RUBBER, SPRAY };

// What a dab works with. The coverage grid and the three other pictures are used by some tools only.
struct Scene {
    Picture image, strokeStart, original, patch;
    Grid coverage;
};

struct Dab {
    Tool tool;
    bool soft;
    int left, top;  // of the mask on the image
    Pixel colour;
    int opacity;  // percent
};

// The brush as it lies on the picture (top row first). shape: 0 circle, 1 rectangle.
Grid brushGrid(int width, int height, int shape);

void layDab(Scene& scene, const Dab& dab, const Grid& mask);

// The points of the digital line from (x0, y0) to (x1, y1), each found by rounding the true line; a
// point midway between two pixels goes to the one nearer to the end.
std::vector<std::pair<int, int>> linePoints(int x0, int y0, int x1, int y1);

}  // namespace reference
