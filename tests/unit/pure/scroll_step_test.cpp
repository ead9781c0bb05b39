#include <gtest/gtest.h>

#include "session/ground/scroll_step.h"

static const ScrollRange brush = {1, 48, 1, 8};

TEST(ScrollStep, LinesAndPages)
{
    EXPECT_EQ(15, scrolledPosition(16, 0, 0, brush));
    EXPECT_EQ(17, scrolledPosition(16, 1, 0, brush));
    EXPECT_EQ(8, scrolledPosition(16, 2, 0, brush));
    EXPECT_EQ(24, scrolledPosition(16, 3, 0, brush));
}

TEST(ScrollStep, ThumbIsTakenAndHeldInsideTheBounds)
{
    EXPECT_EQ(30, scrolledPosition(16, 4, 30, brush));
    EXPECT_EQ(31, scrolledPosition(16, 5, 31, brush));
    EXPECT_EQ(48, scrolledPosition(16, 5, 30000, brush));
    EXPECT_EQ(1, scrolledPosition(16, 5, -5, brush));
}

TEST(ScrollStep, StopsAtTheBounds)
{
    EXPECT_EQ(1, scrolledPosition(1, 0, 0, brush));
    EXPECT_EQ(48, scrolledPosition(48, 1, 0, brush));
    EXPECT_EQ(1, scrolledPosition(5, 2, 0, brush));
    EXPECT_EQ(48, scrolledPosition(44, 3, 0, brush));
}

TEST(ScrollStep, OtherCodesChangeNothing)
{
    for (int code : {6, 7, 8, 9, -1})
        EXPECT_EQ(16, scrolledPosition(16, code, 30, brush)) << code;
}
