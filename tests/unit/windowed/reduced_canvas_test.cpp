// Thin strokes on a canvas that is smaller than the image: whatever a tool paints is on the screen at once, also
// where it is narrower than a pixel of the screen. The oracle is a repaint of everything.
#include "image/bitmap_block.h"
#include "image/packed_bitmap.h"
#include "tests/unit/windowed/client_screen.h"
#include "tests/unit/windowed/stroke_model.h"
#include "tools/painting/undo_history.h"

constexpr SIZE CLIENT = {48, 40};
constexpr double SCALES[] = {1, 1.33, 2, 4.4, 6.3};  // image pixels to a screen pixel
constexpr uint32_t TOOLS[] = {TOOL_BRUSH, TOOL_RUBBER, TOOL_AEROGRAPHE, TOOL_STAMP, TOOL_SMOOTH, TOOL_SPOONBILL};

struct Drag {
    POINT from, to;  // on the screen, in tenths of a pixel
};
constexpr Drag DRAGS[] = {{{103, 56}, {103, 350}}, {{57, 119}, {431, 119}}, {{71, 64}, {398, 353}}};

struct ReducedCanvas : SessionFixture, testing::WithParamInterface<double> {
    Dice dice = {1};
    int changes = 0;  // steps that showed on the screen

    // Noise of large steps, so that every dab changes what it touches; other noise to come back with Rubber.
    bool start()
    {
        const int width = (int)(CLIENT.cx * GetParam()), height = (int)(CLIENT.cy * GetParam());
        if (!open(randomPicture(dice, width, height), CLIENT, true)) return false;
        session->overlayEnabled = 0;  // nothing at the pointer
        if (session->originalImage) GlobalFree(session->originalImage);
        session->originalImage = bitmapOf(randomPicture(dice, width, height));
        return session->originalImage != nullptr;
    }
    POINT onImage(POINT tenths) const
    {
        return {(LONG)(tenths.x * GetParam() / 10), (LONG)(tenths.y * GetParam() / 10)};
    }
    // True when the screen shows what it should; counts whether it shows something new.
    bool showsAll(std::vector<uint32_t>& before)
    {
        if (!showsWhatARepaintShows(session->canvasWindow)) return false;
        const std::vector<uint32_t> now = clientScreen(session->canvasWindow);
        changes += now != before;
        before = now;
        return true;
    }
    // Press, drag, release, undo and redo; the name of the first step whose result is not on the screen.
    const char* firstUnseen(const Drag& drag)
    {
        const POINT from = onImage(drag.from), to = onImage(drag.to);
        std::vector<uint32_t> shown = clientScreen(session->canvasWindow);
        sessionPress(from.x, from.y);
        if (!showsAll(shown)) return "press";
        sessionMove(to.x, to.y);
        if (!showsAll(shown)) return "move";
        sessionTick();
        if (!showsAll(shown)) return "timer";
        sessionRelease(to.x, to.y);
        if (!showsAll(shown)) return "release";
        applyUndo(UNDO);
        if (!showsAll(shown)) return "undo";
        applyUndo(REDO);
        return showsAll(shown) ? nullptr : "redo";
    }
};

TEST_P(ReducedCanvas, EveryThinStrokeClickUndoAndRedoIsSeen)
{
    ASSERT_TRUE(start());
    for (uint32_t tool : TOOLS) {
        changes = 0;
        for (int size = 1; size <= 8; ++size) {
            for (int shape : {SHAPE_CIRCLE, SHAPE_RECTANGLE}) {
                sessionBrush({tool, shape, size % 2 == 0, size, size, 100, {dice.upTo(255), dice.upTo(255), 7}});
                for (const Drag& drag : DRAGS) {
                    const char* unseen = firstUnseen(drag);
                    ASSERT_EQ(nullptr, unseen) << unseen << ", tool " << tool << ", brush " << size << ", shape "
                                               << shape << ", drag to " << drag.to.x << ", " << drag.to.y;
                }
            }
        }
        EXPECT_GT(changes, 0) << "tool " << tool << " painted nothing";
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, ReducedCanvas, testing::ValuesIn(SCALES),
                         [](const testing::TestParamInfo<double>& info) {
                             return "OneTo" + std::to_string((int)(info.param * 100)) + "Hundredths";
                         });
