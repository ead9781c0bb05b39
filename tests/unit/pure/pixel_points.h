// Points of outlines and bands as the tests of geometry compare them.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "image/pixels/bits_view.h"
#include "tests/reference/outline_reference.h"

inline void expectPoint(int x, int y, PixelPoint actual)
{
    EXPECT_EQ(x, actual.x);
    EXPECT_EQ(y, actual.y);
}

inline std::vector<PixelPoint> asPixels(const std::vector<ReferencePoint>& points)
{
    std::vector<PixelPoint> pixels;
    for (ReferencePoint p : points)
        pixels.push_back(PixelPoint{p.x, p.y});
    return pixels;
}
