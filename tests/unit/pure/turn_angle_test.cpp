#include "selection/geometry/turn_angle.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(TurnAngle, AnglesAddUpOverTheShorterWay)
{
    const PixelPoint centre = {500, 500};
    AngleTrack track = beginAngle(centre, PixelPoint{600, 500});
    trackAngle(track, PixelPoint{500, 400});  // up: counter-clockwise
    EXPECT_EQ(90, trackedDegrees(track));
    trackAngle(track, PixelPoint{400, 500});
    trackAngle(track, PixelPoint{500, 600});
    trackAngle(track, PixelPoint{500, 500});  // the centre has no angle
    EXPECT_EQ(270, trackedDegrees(track));
    trackAngle(track, PixelPoint{600, 500});
    trackAngle(track, PixelPoint{600, 400});
    EXPECT_EQ(405, trackedDegrees(track));
    AngleTrack back = beginAngle(centre, PixelPoint{600, 500});
    for (int degrees = -10; degrees >= -1000; degrees -= 10) {
        const double angle = degrees * 3.14159265358979 / 180;
        trackAngle(back, PixelPoint{500 + (int)std::lround(4000 * std::cos(angle)),
                                    500 - (int)std::lround(4000 * std::sin(angle))});
    }
    EXPECT_NEAR(-1000, trackedAngle(back), 0.05);
}

TEST(TurnAngle, AngleBeginsWhereThePointerLeavesTheCentre)
{
    AngleTrack track = beginAngle(PixelPoint{5, 5}, PixelPoint{5, 5});
    trackAngle(track, PixelPoint{5, 0});
    EXPECT_EQ(0, trackedDegrees(track));
    trackAngle(track, PixelPoint{0, 5});
    EXPECT_EQ(90, trackedDegrees(track));
}

TEST(TurnAngle, DegreesAreTruncatedTowardZero)
{
    AngleTrack track = beginAngle(PixelPoint{0, 0}, PixelPoint{1000, 0});
    trackAngle(track, PixelPoint{1000, -43});  // 2.46 degrees
    EXPECT_EQ(2, trackedDegrees(track));
    trackAngle(track, PixelPoint{1000, 52});  // -2.98
    EXPECT_EQ(-2, trackedDegrees(track));
}

TEST(TurnAngle, RotationLosesOneTurnBeyond360)
{
    EXPECT_EQ(360, addRotation(350, 10));
    EXPECT_EQ(1, addRotation(350, 11));
    EXPECT_EQ(-360, addRotation(-300, -60));
    EXPECT_EQ(-1, addRotation(-300, -61));
    EXPECT_EQ(-90, addRotation(90, -180));
}
