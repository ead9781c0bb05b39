// The brush's picture in the palette and under the pointer, pixel by pixel.
#include <gtest/gtest.h>

#include <string>

#include "session/ground/session_record.h"
#include "tools/brush/brush_preview.h"
#include "session/ground/tool_table.h"

constexpr COLORREF PAINT = 0x00204080, BLACK = 0x00000000, WHITE = 0x00FFFFFF, GREY = 0x00C0C0C0, BLUE = 0x00FF0000;
constexpr COLORREF BACKGROUND = 0x0012FE34;

struct BrushPreview : testing::Test {
    HDC dc = nullptr;
    HBITMAP bitmap = nullptr;
    HGDIOBJ oldBitmap = nullptr;

    void SetUp() override
    {
        session = (SessionRecord*)calloc(1, sizeof(SessionRecord));
        session->paintColour = PAINT;
        session->currentTool = TOOL_BRUSH;
        const HDC screen = GetDC(nullptr);
        dc = CreateCompatibleDC(screen);
        bitmap = CreateCompatibleBitmap(screen, 64, 64);
        ReleaseDC(nullptr, screen);
        oldBitmap = SelectObject(dc, bitmap);
    }

    void TearDown() override
    {
        SelectObject(dc, oldBitmap);
        DeleteObject(bitmap);
        DeleteDC(dc);
        free(session);
        session = nullptr;
    }

    void draw(const RECT& area, int width, int height, bool palette)
    {
        const HBRUSH fill = CreateSolidBrush(BACKGROUND);
        const RECT all = {0, 0, 64, 64};
        FillRect(dc, &all, fill);
        DeleteObject(fill);
        drawBrushPreview(dc, area, width, height, palette);
    }

    char letterAt(int x, int y) const
    {
        const COLORREF colour = GetPixel(dc, x, y);
        return colour == session->paintColour ? '#'
               : colour == WHITE              ? '.'
               : colour == GREY               ? ','
               : colour == BLACK              ? 'o'
               : colour == BLUE               ? 'b'
                                              : '?';
    }

    std::string picture(int width, int height) const
    {
        std::string text;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x)
                text += letterAt(x, y);
            text += '\n';
        }
        return text;
    }

    int count(const RECT& part, char letter) const
    {
        int found = 0;
        for (int y = part.top; y < part.bottom; ++y)
            for (int x = part.left; x < part.right; ++x)
                found += letterAt(x, y) == letter;
        return found;
    }
};

// The left and top arms end one pixel before the centre, the right and bottom arms start two after it.
TEST_F(BrushPreview, OnePixelIsACrossWithAGap)
{
    for (uint32_t shape : {SHAPE_CIRCLE, SHAPE_RECTANGLE}) {
        session->brushShape = shape;
        draw({0, 0, 19, 19}, 1, 1, true);
        EXPECT_EQ("...................\n"
                  ".........o.........\n"
                  ".........o.........\n"
                  ".........o.........\n"
                  ".........o.........\n"
                  ".........o.........\n"
                  ".........o.........\n"
                  ".........o.........\n"
                  "...................\n"
                  ".ooooooo...oooooo..\n"
                  "...................\n"
                  ".........o.........\n"
                  ".........o.........\n"
                  ".........o.........\n"
                  ".........o.........\n"
                  ".........o.........\n"
                  ".........o.........\n"
                  "...................\n"
                  "...................\n",
                  picture(19, 19));
    }
}

TEST_F(BrushPreview, ThinBrushIsABoxWhateverTheShape)
{
    for (uint32_t shape : {SHAPE_CIRCLE, SHAPE_RECTANGLE}) {
        session->brushShape = shape;
        draw({0, 0, 8, 8}, 2, 5, true);
        EXPECT_EQ("........\n"
                  "...##...\n"
                  "...##...\n"
                  "...##...\n"
                  "...##...\n"
                  "...##...\n"
                  "........\n"
                  "........\n",
                  picture(8, 8));
    }
}

TEST_F(BrushPreview, ShapeTwoShowsNothing)
{
    session->brushShape = 2;
    for (const SIZE size : {SIZE{1, 1}, SIZE{2, 5}, SIZE{9, 9}}) {
        draw({0, 0, 20, 20}, size.cx, size.cy, true);
        EXPECT_EQ(400, count({0, 0, 20, 20}, '.')) << size.cx;
    }
}

// Without a pen the box's right column and bottom row may stay empty, as the system draws it.
TEST_F(BrushPreview, ShapesAreCentredInTheirArea)
{
    const RECT area = {5, 7, 30, 40}, box = {10, 16, 24, 30}, sure = {10, 16, 23, 29};
    session->brushShape = SHAPE_RECTANGLE;
    draw(area, 14, 14, true);
    EXPECT_EQ(13 * 13, count(sure, '#'));
    EXPECT_EQ(count(box, '#'), count({0, 0, 64, 64}, '#'));
    EXPECT_EQ(64 * 64 - 25 * 33, count({0, 0, 64, 64}, '?')) << "nothing outside the area";
    session->brushShape = SHAPE_CIRCLE;
    draw(area, 14, 14, true);
    EXPECT_EQ('#', letterAt(16, 22));
    EXPECT_EQ('#', letterAt(10, 22));
    EXPECT_EQ('#', letterAt(16, 16));
    EXPECT_EQ('.', letterAt(10, 16));
    EXPECT_EQ('.', letterAt(23, 29));
    EXPECT_EQ(count(box, '#'), count({0, 0, 64, 64}, '#'));
}

// In the palette white stands on white, within a black outline.
TEST_F(BrushPreview, WhiteHasABlackOutlineInThePalette)
{
    session->paintColour = WHITE;
    session->brushShape = SHAPE_RECTANGLE;
    const RECT area = {0, 0, 20, 20};
    draw(area, 10, 8, true);
    EXPECT_EQ(GREY, session->previewBackground);
    EXPECT_EQ(2 * 10 + 2 * 6, count(area, 'o'));
    EXPECT_EQ(400 - 32, count(area, '#'));
    EXPECT_EQ('o', letterAt(5, 6));
    EXPECT_EQ('o', letterAt(14, 13));
    session->brushShape = SHAPE_CIRCLE;
    draw(area, 10, 10, true);
    EXPECT_EQ('#', letterAt(10, 10));
    EXPECT_EQ('#', letterAt(0, 0));
    EXPECT_GT(count(area, 'o'), 15);
}

// Small ones have no outline: a thin white brush cannot be seen there.
TEST_F(BrushPreview, ThinWhiteBrushIsWhiteOnWhiteInThePalette)
{
    session->paintColour = WHITE;
    draw({0, 0, 20, 20}, 2, 9, true);
    EXPECT_EQ(400, count({0, 0, 20, 20}, '#'));
}

// Under the pointer the background is what will be left out: light grey, so that the white can be seen.
TEST_F(BrushPreview, WhiteStandsOnGreyUnderThePointer)
{
    session->paintColour = WHITE;
    session->brushShape = SHAPE_RECTANGLE;
    draw({0, 0, 20, 20}, 10, 8, false);
    EXPECT_EQ(GREY, session->previewBackground);
    EXPECT_EQ(0, count({0, 0, 20, 20}, 'o'));
    EXPECT_EQ(9 * 7, count({5, 6, 14, 13}, '#'));
    EXPECT_EQ(',', letterAt(4, 6));
    session->paintColour = PAINT;
    draw({0, 0, 20, 20}, 10, 8, false);
    EXPECT_EQ(WHITE, session->previewBackground);
    EXPECT_EQ('.', letterAt(0, 0));
}

// It reshapes outlines, so it is shown as one; a white one in blue.
TEST_F(BrushPreview, OutlineBrushIsACircleLine)
{
    session->currentTool = TOOL_OUTLINE_BRUSH;
    draw({0, 0, 20, 20}, 14, 14, true);
    EXPECT_EQ('.', letterAt(10, 10));
    EXPECT_GT(count({0, 0, 20, 20}, '#'), 20);
    EXPECT_LT(count({0, 0, 20, 20}, '#'), 60);
    session->paintColour = WHITE;
    draw({0, 0, 20, 20}, 14, 14, false);
    EXPECT_EQ(',', letterAt(10, 10));
    EXPECT_GT(count({0, 0, 20, 20}, 'b'), 20);
    EXPECT_EQ(0, count({0, 0, 20, 20}, '#'));
}

TEST_F(BrushPreview, LeavesTheDeviceContextAsItWas)
{
    SetMapMode(dc, MM_LOMETRIC);
    const HGDIOBJ pen = GetCurrentObject(dc, OBJ_PEN), brush = GetCurrentObject(dc, OBJ_BRUSH);
    drawBrushPreview(dc, {0, 0, 20, 20}, 1, 1, 1);
    EXPECT_EQ(MM_LOMETRIC, GetMapMode(dc));
    EXPECT_EQ(pen, GetCurrentObject(dc, OBJ_PEN));
    EXPECT_EQ(brush, GetCurrentObject(dc, OBJ_BRUSH));
}
