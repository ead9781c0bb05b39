// How far a pixel of a soft dab lies from the dab's middle.
//
//     distance t:   0 at the two middle columns and lines, growing with the square of the elliptic
//                   radius, 1 on the rim and beyond
//     weight:       Brush opacity x (1 - t^3), Rubber opacity x (1 - t), spray opacity x (1 - sqrt t)
//
// The ellipse is that of the dab's VISIBLE size: a dab cut by the image's border has the falloff of
// the smaller dab that is left: soft strokes along a border are as strong as they look at it.
#pragma once

#include "tools/kernels/dab_placement.h"

struct SoftFalloff {
    double squareA, squareB;  // squared half axes; a quarter for a size of 1
    double limit;             // their product: the distance at the rim, 0 for a size of exactly 2
    int halfWidth, halfHeight;
};

inline SoftFalloff softFalloff(int visibleWidth, int visibleHeight)
{
    const double a = visibleWidth / 2.0 - 1.0, b = visibleHeight / 2.0 - 1.0;
    return SoftFalloff{a * a, b * b, a * a * (b * b), visibleWidth / 2, visibleHeight / 2};
}

inline SoftFalloff softFalloff(const DabPlacement& dab)
{
    return softFalloff(dab.ruleWidth, dab.ruleHeight);
}

// A dab that is exactly 2 wide or high has no room between middle and rim: it changes nothing.
inline bool hasRoom(const SoftFalloff& falloff)
{
    return falloff.limit != 0;
}

inline double offsetFromMiddle(int index, int half)
{
    return index < half ? index - half + 1 : index - half;
}

// t for column i and line j of the visible dab. Only for a falloff that has room.
inline double falloffDistance(const SoftFalloff& falloff, int i, int j)
{
    const double dx = offsetFromMiddle(i, falloff.halfWidth), dy = offsetFromMiddle(j, falloff.halfHeight);
    const double d = dx * dx * falloff.squareB + dy * dy * falloff.squareA;
    return (d > falloff.limit ? falloff.limit : d) / falloff.limit;
}
