#include "tests/reference/turn_reference.h"

#include <cmath>

static bool insideAt(const ReferencePatch& patch, int column, int row)
{
    return column >= 0 && row >= 0 && column < patch.mask.width && row < patch.mask.height &&
           patch.mask.at(column, row).red == 0;
}

static bool bilinear(const ReferencePatch& patch, double x, double y, double* channels)
{
    double weights = 0;
    channels[0] = channels[1] = channels[2] = 0;
    for (int v = (int)std::floor(y); v <= (int)std::floor(y) + 1; ++v) {
        for (int u = (int)std::floor(x); u <= (int)std::floor(x) + 1; ++u) {
            const double weight = (1 - std::fabs(x - u)) * (1 - std::fabs(y - v));
            if (!insideAt(patch, u, v) || weight <= 0) continue;
            const reference::Pixel p = patch.pixels.at(u, v);
            weights += weight;
            channels[0] += weight * p.blue;
            channels[1] += weight * p.green;
            channels[2] += weight * p.red;
        }
    }
    for (int c = 0; c < 3 && weights > 0; ++c)
        channels[c] /= weights;
    return weights > 0;
}

// Pixel (x, y) stands for the point (x + 1/2, y - 1/2) of the plane of outlines.
bool referenceTurnedPixel(const ReferencePatch& from, const ReferenceTurn& turn, int x, int y, double* channels)
{
    const double angle = turn.degrees * 3.1415926 / 180;
    const double right = x + 0.5 - turn.centreX, down = y - 0.5 - turn.centreY;
    const double sx = turn.centreX + std::cos(angle) * right - std::sin(angle) * down;
    const double sy = turn.centreY + std::sin(angle) * right + std::cos(angle) * down;
    return bilinear(from, sx - 0.5 - from.left, sy + 0.5 - from.top, channels);
}
