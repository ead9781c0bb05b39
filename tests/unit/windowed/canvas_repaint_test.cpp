// What the canvas shows after a part of the image has changed and was invalidated: the same as after a repaint
// of everything, at scales that do not come out even, too.
#include "canvas/view/canvas_coordinates.h"
#include "image/bitmap_block.h"
#include "tests/unit/windowed/session_fixture.h"

struct CanvasRepaint : SessionFixture {
    SIZE client = {};

    std::vector<uint32_t> screen() const
    {
        BITMAPINFO info = {};
        info.bmiHeader = {sizeof info.bmiHeader, client.cx, -client.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        const HDC dc = GetDC(host), memory = CreateCompatibleDC(dc);
        const HBITMAP copy = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        const HGDIOBJ old = SelectObject(memory, copy);
        BitBlt(memory, 0, 0, client.cx, client.cy, dc, 0, 0, SRCCOPY);
        GdiFlush();
        const std::vector<uint32_t> pixels((const uint32_t*)bits, (const uint32_t*)bits + client.cx * client.cy);
        SelectObject(memory, old);
        DeleteObject(copy);
        DeleteDC(memory);
        ReleaseDC(host, dc);
        return pixels;
    }

    void invert(const RECT& rect)
    {
        BitmapBlock block;
        BitsView pixels;
        ASSERT_TRUE(lockPixels(image, &block, &pixels));
        for (int y = rect.top; y < rect.bottom; ++y)
            for (int i = rect.left * 3; i < rect.right * 3; ++i)
                rowOf(pixels, y)[i] ^= 0xFF;
        unlockBlock(block);
    }
};

TEST_F(CanvasRepaint, ChangedPartsShowNoSeams)
{
    const SIZE scales[][2] = {{{123, 83}, {120, 81}}, {{200, 140}, {74, 52}}, {{61, 41}, {140, 94}}};
    for (const SIZE(&scale)[2] : scales) {
        Dice dice = {5};
        client = scale[1];
        ASSERT_TRUE(open(randomPicture(dice, scale[0].cx, scale[0].cy), client, true));
        session->overlayEnabled = 0;  // nothing at the pointer
        for (int left = 0; left + 9 <= scale[0].cx; ++left) {
            const int top = left * (scale[0].cy - 7) / scale[0].cx;
            const RECT part = {left, top, left + 9, top + 7};
            invert(part);
            invalidateImageRect(session->canvasWindow, part);
            UpdateWindow(session->canvasWindow);
            const std::vector<uint32_t> shown = screen();
            InvalidateRect(session->canvasWindow, nullptr, FALSE);
            UpdateWindow(session->canvasWindow);
            ASSERT_TRUE(shown == screen()) << "from column " << left << " at " << client.cx << " for " << scale[0].cx;
        }
        close();
    }
}
