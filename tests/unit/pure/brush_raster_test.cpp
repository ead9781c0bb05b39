#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/unit/pure/guarded_image.h"
#include "tools/kernels/brush_raster.h"
#include "session/ground/tool_table.h"

// Rows from the dab's top line down, '#' for a set cell.
static std::string picture(int width, int height, uint32_t shape)
{
    GuardedMap map = mapOf(plainGrid(width, height, 7));
    rasteriseBrush(map.view(), shape);
    std::string text;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const uint8_t cell = rowOf(map.view(), y)[x];
            text += cell == 1 ? '#' : cell == 0 ? '.' : '?';
        }
        text += '\n';
    }
    return text;
}

TEST(BrushRaster, SmallestBrushIsOneCell)
{
    EXPECT_EQ("#\n", picture(1, 1, SHAPE_CIRCLE));
    EXPECT_EQ("#\n", picture(1, 1, SHAPE_RECTANGLE));
}

TEST(BrushRaster, ThinBrushIsFullWhateverTheShape)
{
    for (uint32_t shape : {0u, 1u, 2u, 77u}) {
        const std::string tall = picture(2, 48, shape), flat = picture(48, 2, shape);
        EXPECT_EQ(96, std::count(tall.begin(), tall.end(), '#'));
        EXPECT_EQ(96, std::count(flat.begin(), flat.end(), '#'));
    }
}

// The shape leaves one line and one column of its box out; stored mirrored, the line is the top one.
TEST(BrushRaster, CircleLeavesTopLineAndRightColumnEmpty)
{
    EXPECT_EQ("......\n"
              ".###..\n"
              "#####.\n"
              "#####.\n"
              "#####.\n"
              ".###..\n",
              picture(6, 6, SHAPE_CIRCLE));
}

TEST(BrushRaster, RectangleLeavesTopLineAndRightColumnEmpty)
{
    EXPECT_EQ("....\n"
              "###.\n"
              "###.\n",
              picture(4, 3, SHAPE_RECTANGLE));
    const std::string square = picture(16, 16, SHAPE_RECTANGLE);
    EXPECT_EQ(225, std::count(square.begin(), square.end(), '#'));
    EXPECT_EQ("................\n", square.substr(0, 17));
}

// The empty line is the last row in memory of the mirrored scratch picture, so memory row 0 is set.
TEST(BrushRaster, EmptyLineIsTheLastMemoryRow)
{
    GuardedMap map = mapOf(plainGrid(5, 5, 7));
    rasteriseBrush(map.view(), SHAPE_RECTANGLE);
    const uint8_t* memory = map.bytes.data() + GUARD;
    EXPECT_EQ(1, memory[0]);
    EXPECT_EQ(0, memory[4 * map.stride]);
    EXPECT_EQ(PADDING, memory[5]);
}

TEST(BrushRaster, UnknownShapeSetsNothing)
{
    EXPECT_EQ("...\n...\n...\n", picture(3, 3, 2));
}

TEST(BrushRaster, CellCountsOfRoundBrushes)
{
    const std::string large = picture(48, 48, SHAPE_CIRCLE), small = picture(16, 16, SHAPE_CIRCLE);
    EXPECT_EQ(1741, std::count(large.begin(), large.end(), '#'));
    EXPECT_EQ(177, std::count(small.begin(), small.end(), '#'));
}

TEST(BrushRaster, EverySizeMatchesTheReference)
{
    for (uint32_t shape = 0; shape < 3; ++shape) {
        for (int height = 1; height <= 50; ++height) {
            for (int width = 1; width <= 50; ++width) {
                GuardedMap drawn = mapOf(plainGrid(width, height, 7));
                rasteriseBrush(drawn.view(), shape);
                ASSERT_EQ(mapOf(reference::brushGrid(width, height, (int)shape)).bytes, drawn.bytes)
                    << width << "x" << height << " shape " << shape;
            }
        }
    }
}
