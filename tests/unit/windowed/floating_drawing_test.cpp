// A floating selection and its outline on a device context, against the plain way: a bitmap of the image with the
// selection in it, stretched by the system, and a dotted line through all points of the outline in image pixels.
#include "image/bitmap_locks.h"
#include "selection/selection_drawing.h"
#include "selection/selection_frame.h"
#include "tests/unit/windowed/selection_tool_fixture.h"

constexpr SIZE PHOTO = {331, 247};
constexpr SIZE CANVASES[] = {{331, 247}, {150, 111}, {61, 203}, {420, 300}};

// A bitmap as large as the canvas and mapped like it.
struct Surface {
    HDC dc;
    HBITMAP bitmap;
    HGDIOBJ old;
    uint8_t* bits;
    size_t byteCount;
};

static Surface openSurface(SIZE canvas)
{
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, canvas.cx, -canvas.cy, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    Surface surface = {CreateCompatibleDC(nullptr), nullptr, nullptr, nullptr, 0};
    surface.bitmap = CreateDIBSection(surface.dc, &info, DIB_RGB_COLORS, (void**)&surface.bits, nullptr, 0);
    surface.old = SelectObject(surface.dc, surface.bitmap);
    surface.byteCount = (size_t)rowStride(canvas.cx, 24) * (size_t)canvas.cy;
    memset(surface.bits, 77, surface.byteCount);
    SetMapMode(surface.dc, MM_ANISOTROPIC);
    SetWindowExtEx(surface.dc, PHOTO.cx, PHOTO.cy, nullptr);
    SetViewportExtEx(surface.dc, canvas.cx, canvas.cy, nullptr);
    return surface;
}

static void closeSurface(const Surface& surface)
{
    SelectObject(surface.dc, surface.old);
    DeleteObject(surface.bitmap);
    DeleteDC(surface.dc);
}

static bool isInside(const PixelRect& rect, int width, int height)
{
    return rect.left >= 0 && rect.top >= 0 && rect.right <= width && rect.bottom <= height;
}

struct FloatingDrawing : SelectionTool {
    // Rows bottom-up, black where the image has none.
    std::vector<uint8_t> composite()
    {
        const LockedPixels photo(image), pixels(session->selectionImage), mask(session->selectionMask);
        const RECT& rect = session->selectionRect;
        const int width = (int)(rect.right - rect.left), height = (int)(rect.bottom - rect.top);
        std::vector<uint8_t> rows((size_t)rowStride(width, 24) * (size_t)height);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const int px = x + (int)rect.left, py = y + (int)rect.top;
                const uint8_t* from = nullptr;
                if (isInside({px, py, px + 1, py + 1}, PHOTO.cx, PHOTO.cy)) from = rowOf(photo.view, py) + px * 3;
                if (rowOf(mask.view, y)[x * 3 + 2] == 0) from = rowOf(pixels.view, y) + x * 3;
                uint8_t* const to = &rows[(size_t)rowStride(width, 24) * (size_t)(height - 1 - y) + (size_t)x * 3];
                if (from) memcpy(to, from, 3);
            }
        }
        return rows;
    }

    void drawPlainly(HDC dc)
    {
        const RECT& rect = session->selectionRect;
        const int width = (int)(rect.right - rect.left), height = (int)(rect.bottom - rect.top);
        const std::vector<uint8_t> rows = composite();
        BITMAPINFO info = {};
        info.bmiHeader = {sizeof info.bmiHeader, width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
        SetStretchBltMode(dc, COLORONCOLOR);
        StretchDIBits(dc, rect.left, rect.top, width, height, 0, 0, width, height, rows.data(), &info, DIB_RGB_COLORS,
                      SRCCOPY);
        const HPEN pen = CreatePen(PS_DOT, 0, RGB(255, 255, 255));
        const HGDIOBJ old = SelectObject(dc, pen);
        SetBkColor(dc, RGB(0, 0, 0));
        SetBkMode(dc, OPAQUE);
        Polyline(dc, (const POINT*)session->outlinePoints, session->outlinePointCount);
        SelectObject(dc, old);
        DeleteObject(pen);
    }

    // With the frame left out, which both would draw alike.
    void expectSame(SIZE canvas, const RECT* clip)
    {
        const Surface plain = openSurface(canvas), drawn = openSurface(canvas);
        for (const Surface& surface : {plain, drawn})
            if (clip) IntersectClipRect(surface.dc, clip->left, clip->top, clip->right, clip->bottom);
        drawPlainly(plain.dc);
        const RECT frame = session->frameInnerRect;
        SetRectEmpty(&session->frameInnerRect);
        drawSelection(drawn.dc);
        session->frameInnerRect = frame;
        GdiFlush();
        EXPECT_EQ(0, memcmp(plain.bits, drawn.bits, plain.byteCount)) << canvas.cx << " x " << canvas.cy;
        const std::vector<uint8_t> untouched(plain.byteCount, 77);
        EXPECT_TRUE(clip || memcmp(plain.bits, untouched.data(), plain.byteCount) != 0);
        closeSurface(plain);
        closeSurface(drawn);
    }

    void expectSameWholeAndInParts(SIZE canvas)
    {
        expectSame(canvas, nullptr);
        for (int round = 0; round < 12; ++round) {
            const LONG left = dice.upTo(PHOTO.cx - 2), top = dice.upTo(PHOTO.cy - 2);
            const RECT part = {left, top, left + dice.between(1, 90), top + dice.between(1, 90)};
            expectSame(canvas, &part);
        }
    }

    void openOnCanvas(SIZE canvas)
    {
        picture = randomPicture(dice, PHOTO.cx, PHOTO.cy);
        ASSERT_TRUE(open(picture, canvas));
        session->currentTool = TOOL_SELECTION;
        draw({{130, 50}, {260, 75}, {295, 160}, {200, 200}, {150, 145}, {225, 60}, {70, 180}});
        ASSERT_TRUE(session->selectionActive);
    }
};

TEST_F(FloatingDrawing, ShowsWhatTheImageWithTheSelectionInItWouldShow)
{
    for (const SIZE& canvas : CANVASES) {
        openOnCanvas(canvas);
        expectSameWholeAndInParts(canvas);
        for (int hit : {HIT_BRIGHTER, HIT_HUE_UP, HIT_FLIP_HORIZONTAL, HIT_FLIP_VERTICAL}) {
            click(hit);
            expectSame(canvas, nullptr);
        }
        rotateSelectionBy(33);
        expectSameWholeAndInParts(canvas);
        resizeSelectionTo({20, 30, 210, 240});
        expectSameWholeAndInParts(canvas);
        close();
    }
}

// Black where the image does not reach.
TEST_F(FloatingDrawing, BeyondTheImageToo)
{
    for (const SIZE& canvas : CANVASES) {
        openOnCanvas(canvas);
        for (const POINT by : {POINT{-100, 0}, POINT{0, -90}, POINT{260, 170}, POINT{-200, 30}}) {
            moveSelectionBy((int)by.x, (int)by.y);
            expectSameWholeAndInParts(canvas);
        }
        close();
    }
}
