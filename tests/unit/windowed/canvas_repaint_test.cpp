// What the canvas shows after a part of the image has changed and was invalidated: the same as after a repaint
// of everything, at scales that do not come out even, too.
#include "canvas/view/canvas_coordinates.h"
#include "image/bitmap_locks.h"
#include "tests/unit/windowed/client_screen.h"
#include "tests/unit/windowed/session_fixture.h"

struct CanvasRepaint : SessionFixture {
    void invert(const RECT& rect)
    {
        const LockedPixels pixels(image);
        ASSERT_TRUE(pixels);
        for (int y = rect.top; y < rect.bottom; ++y)
            for (int i = rect.left * 3; i < rect.right * 3; ++i)
                rowOf(pixels.view, y)[i] ^= 0xFF;
    }
};

TEST_F(CanvasRepaint, ChangedPartsShowNoSeams)
{
    const SIZE scales[][2] = {{{123, 83}, {120, 81}}, {{200, 140}, {74, 52}}, {{61, 41}, {140, 94}}};
    for (const SIZE(&scale)[2] : scales) {
        Dice dice = {5};
        ASSERT_TRUE(open(randomPicture(dice, scale[0].cx, scale[0].cy), scale[1], true));
        session->overlayEnabled = 0;  // nothing at the pointer
        for (int left = 0; left + 9 <= scale[0].cx; ++left) {
            const int top = left * (scale[0].cy - 7) / scale[0].cx;
            const RECT part = {left, top, left + 9, top + 7};
            invert(part);
            invalidateImageRect(session->canvasWindow, part);
            UpdateWindow(session->canvasWindow);
            ASSERT_TRUE(showsWhatARepaintShows(session->canvasWindow))
                << "from column " << left << " at " << scale[1].cx << " for " << scale[0].cx;
        }
        close();
    }
}
