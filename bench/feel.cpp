// What a hand feels: whole sessions with real windows and a real pointer, over photos of 6, 24 and 48 megapixels.
//     FEEL <name> <value> <unit>
// Where a time ends with a picture, it ends when the pixels on the screen change, not when a function returns. Who
// waits sleeps in between: the session, the display and the system's server need the processors.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "bench/feel_measures.h"
#include "tests/session/selection_fixture.h"

static const Size feltSizes[] = {
    {"6mp", 3000, 2000, 900, 600}, {"24mp", 6000, 4000, 900, 600}, {"48mp", 8000, 6000, 800, 600}};
constexpr int MOVES = 25, ROUNDS = 9;

struct Feel : SelectionSession, testing::WithParamInterface<Size> {
    double megapixels() const { return photo.width * 1e-6 * photo.height; }

    void tell(const char* name, double value, const char* unit) const
    {
        printf("FEEL %s_%s %.2f %s\n", name, GetParam().name, value, unit);
        fflush(stdout);
    }

    POINT middleOf(HWND window) const
    {
        RECT rect = {};
        GetWindowRect(window, &rect);
        return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
    }

    // Until the window has got the message and everything is painted. What is still on its way to the screen then
    // is not waited for.
    template <typename Action>
    double untilPainted(HWND window, UINT message, Action action)
    {
        const size_t first = seenCount();
        const double start = millisecondsNow();
        action();
        while (!wasSeen(first, window, message) && millisecondsNow() - start < LIMIT_MS)
            Sleep(1);
        runOnHost(&host, [&] { UpdateWindow(host.canvas); });
        return millisecondsNow() - start;
    }

    void plainCopy()
    {
        std::vector<uint8_t> copy(photo.bitmapBytes);
        std::vector<double> times;
        const void* const bytes = GlobalLock(photo.block);
        for (int n = 0; n < 5; ++n) {
            const double start = millisecondsNow();
            memcpy(copy.data(), bytes, photo.bitmapBytes);
            times.push_back(millisecondsNow() - start);
        }
        GlobalUnlock(photo.block);
        tell("plain_copy", medianOf(times), "ms");
    }

    // Hosts have no hooks, which would make every message of the windows' making ask the system for them.
    void withoutHooks(const std::function<void()>& measure)
    {
        runOnHost(&host, unhookMessages);
        measure();
        runOnHost(&host, [&] { hookMessages(host.threadId); });
    }

    // The last change in the middle of the canvas before everything is at rest.
    void enter()
    {
        withoutHooks([&] { call(); });
        ASSERT_TRUE(settle(&host));
    }

    void call()
    {
        const POINT middle = {(dialogRect.left + dialogRect.right) / 2, (dialogRect.top + dialogRect.bottom) / 2};
        std::vector<uint8_t> shown = around(middle);
        double changed = -1, start = millisecondsNow();
        beginCall(&host, arguments());
        for (double rest = start; millisecondsNow() - rest < 300;) {
            const std::vector<uint8_t> now = around(middle);
            if (now != shown) changed = rest = millisecondsNow();
            if (!sessionIsOpen(&host)) rest = millisecondsNow();
            shown = now;
            Sleep(1);
            ASSERT_LT(millisecondsNow() - start, LIMIT_MS);
        }
        tell("entry_to_full_canvas", changed - start, "ms");
    }

    void takeLargeSoftBrush()
    {
        ASSERT_TRUE(clickControl(&host, ID_BRUSH));
        ASSERT_TRUE(clickControl(&host, ID_SOFT));
        for (int id : {ID_WIDTH, ID_HEIGHT})
            for (int n = 0; n < 60 && scrollPosition(host, id) < 47; ++n)
                ASSERT_TRUE(clickScrollBar(&host, id, scrollPosition(host, id) < 36 ? 2 : 1));
    }

    POINT strokePoint(int n) const { return onCanvas(host, 60 + n * 28, 200 + n % 5 * 9); }

    void paint()
    {
        ASSERT_TRUE(movePointer(&host, strokePoint(0)));
        tell("press_to_pixel", untilPixelsChange(strokePoint(0), [] { sendMouse(MOUSEEVENTF_LEFTDOWN); }), "ms");
        std::vector<double> moves;
        for (int n = 1; n < MOVES; ++n)
            moves.push_back(untilPixelsChange(strokePoint(n), [&] { sendMove(strokePoint(n)); }));
        tell("move_to_pixel_soft_48", medianOf(moves), "ms");
        ASSERT_TRUE(releaseButton(&host));
        ASSERT_TRUE(movePointer(&host, middleOf(GetDlgItem(host.palette, ID_UNDO))));
        ASSERT_TRUE(pressButton(&host));
        tell("undo_of_long_stroke", untilPixelsChange(strokePoint(MOVES / 2), [] { sendMouse(MOUSEEVENTF_LEFTUP); }),
             "ms");
        ASSERT_TRUE(settle(&host));
    }

    // Up and down in a square of 2,000 image pixels, ten times: some 20,000 points.
    POINT zigzag(int n) const
    {
        const int side = 2000 * GetParam().clientWidth / photo.width;
        const int left = (GetParam().clientWidth - side) / 2, top = (GetParam().clientHeight - side) / 2;
        return onCanvas(host, left + side * n / 10, std::clamp(top + n % 2 * side, 3, GetParam().clientHeight - 4));
    }

    void drawOutline()
    {
        ASSERT_TRUE(clickControl(&host, ID_SELECTION));
        model.scale = scaleOf(host, photo);
        const size_t first = seenCount();
        ASSERT_TRUE(movePointer(&host, zigzag(0)));
        ASSERT_TRUE(pressButton(&host));
        std::vector<double> moves;
        for (int n = 1; n <= 10; ++n)
            moves.push_back(untilPainted(host.canvas, WM_MOUSEMOVE, [&] { sendMove(zigzag(n)); }));
        tell("outline_move_2000_points_more", medianOf(moves), "ms");
        tell("selection_close_20k", untilPainted(host.canvas, WM_LBUTTONUP, [] { sendMouse(MOUSEEVENTF_LEFTUP); }),
             "ms");
        ASSERT_TRUE(settle(&host));
        model.shown.rect = rectOfDrawnOutline(model.scale, host, first);
    }

    // Three steps to one side, to pixels of the band's left side, and let go; the next time back.
    void dragSelection()
    {
        std::vector<double> moves, drops;
        for (int n = 0; n < ROUNDS; ++n) {
            const int step = n % 2 ? -9 : 9;
            const POINT grip = clientOfHit(INSIDE);
            const RECT band = toClient(model.scale, model.shown.rect);
            ASSERT_TRUE(movePointerOnCanvas(&host, grip.x, grip.y - 4));  // it may be there already
            ASSERT_TRUE(movePointerOnCanvas(&host, grip.x, grip.y));
            ASSERT_TRUE(pressButton(&host));
            for (int by = step; by != 4 * step; by += step) {
                const POINT side = onCanvas(host, band.left + by + 1, (band.top + band.bottom) / 2);
                moves.push_back(untilPixelsChange(side, [&] { sendMove(onCanvas(host, grip.x + by, grip.y)); }));
            }
            drops.push_back(untilPainted(host.canvas, WM_LBUTTONUP, [] { sendMouse(MOUSEEVENTF_LEFTUP); }));
            ASSERT_TRUE(settle(&host));
            const LONG left = toImage(model.scale, POINT{band.left + 3 * step, 0}).x;
            OffsetRect(&model.shown.rect, left - model.shown.rect.left, 0);
        }
        tell("move_to_pixel_selection_20k", medianOf(moves), "ms");
        tell("drop_of_selection_20k", medianOf(drops), "ms");
    }

    // As much as a dab of 48 x 48 image pixels changes, in the middle of the selection.
    void repaintPart(const char* name)
    {
        const POINT middle = {GetParam().clientWidth / 2, GetParam().clientHeight / 2};
        const RECT part = toClient(scaleOf(host, photo), RECT{0, 0, 48, 48});
        std::vector<double> times;
        for (int n = 0; n < ROUNDS; ++n) {
            runOnHost(&host, [&] {
                RECT box = part;
                OffsetRect(&box, middle.x, middle.y);
                const double start = millisecondsNow();
                InvalidateRect(host.canvas, &box, FALSE);
                UpdateWindow(host.canvas);
                times.push_back(millisecondsNow() - start);
            });
        }
        tell(name, medianOf(times), "ms");
    }

    void nudgeSelection()
    {
        std::vector<double> steps;
        for (int n = 0; n < ROUNDS; ++n) {
            const WORD key = n % 2 ? VK_LEFT : VK_RIGHT;
            steps.push_back(untilPainted(host.canvas, WM_KEYDOWN, [&] { sendKey(key, 0); }));
            sendKey(key, KEYEVENTF_KEYUP);
            ASSERT_TRUE(settle(&host));
        }
        if (ROUNDS % 2) OffsetRect(&model.shown.rect, 1, 0);
        tell("nudge_of_selection_20k", medianOf(steps), "ms");
    }

    void stepColour()
    {
        const POINT button = clientOfHit(BRIGHTER);
        ASSERT_TRUE(movePointerOnCanvas(&host, button.x, button.y));
        std::vector<double> steps;
        for (int n = 0; n < ROUNDS; ++n) {
            steps.push_back(untilPainted(host.canvas, WM_LBUTTONDOWN, [] { sendMouse(MOUSEEVENTF_LEFTDOWN); }));
            ASSERT_TRUE(releaseButton(&host));
        }
        tell("colour_step_of_selection_20k", medianOf(steps), "ms");
        ASSERT_NO_FATAL_FAILURE(press(CLOSE));
        ASSERT_TRUE(settle(&host));
    }

    void stepContrast()
    {
        ASSERT_TRUE(clickControl(&host, ID_CONTRAST));
        HWND dialog = nullptr;
        ASSERT_TRUE(waitUntil("the contrast dialog", [&] { return (dialog = dialogWith(host, ID_BRIGHTNESS_BAR)); }));
        ASSERT_TRUE(settle(&host));
        RECT client, bar;
        GetClientRect(dialog, &client);
        GetWindowRect(GetDlgItem(dialog, ID_BRIGHTNESS_BAR), &bar);
        POINT preview = {client.right - 20, 20};
        ClientToScreen(dialog, &preview);
        const bool upright = bar.bottom - bar.top > bar.right - bar.left;
        ASSERT_TRUE(movePointer(&host, {upright ? (bar.left + bar.right) / 2 : bar.left + 5,
                                        upright ? bar.top + 5 : (bar.top + bar.bottom) / 2}));
        std::vector<double> steps;
        for (int n = 0; n < ROUNDS; ++n) {
            steps.push_back(untilPixelsChange(preview, [] { sendMouse(MOUSEEVENTF_LEFTDOWN); }));
            ASSERT_TRUE(releaseButton(&host));
        }
        tell("contrast_preview", medianOf(steps), "ms");
        ASSERT_TRUE(movePointer(&host, middleOf(GetDlgItem(dialog, ID_CONTRAST_CANCEL))));
        ASSERT_TRUE(pressButton(&host) && releaseButton(&host));
        ASSERT_TRUE(waitUntil("the dialog to close", [&] { return !IsWindow(dialog); }));
        ASSERT_TRUE(settle(&host));
    }

    void idle()
    {
        ASSERT_TRUE(movePointer(&host, strokePoint(10)));
        const double before = processorMilliseconds();
        Sleep(2000);
        tell("idle_processor", (processorMilliseconds() - before) / 20, "percent");
    }

    void leave()
    {
        ASSERT_TRUE(movePointer(&host, middleOf(GetDlgItem(host.palette, ID_CLOSE))));
        ASSERT_TRUE(pressButton(&host));
        withoutHooks([&] {
            const double start = millisecondsNow();
            sendMouse(MOUSEEVENTF_LEFTUP);
            while (host.running && millisecondsNow() - start < LIMIT_MS)
                Sleep(1);
            tell("close_to_return", millisecondsNow() - start, "ms");
        });
        ASSERT_TRUE(waitForReturn(&host));
    }

    // What the session takes beside the host's photo and all else that was there before the call.
    void tellMemory(const char* name, size_t bytes, size_t before) const
    {
        tell(name, ((double)bytes - (double)before) / 1e6 / megapixels(), "MB/MP");
    }
};

TEST_P(Feel, Session)
{
    const Size& size = GetParam();
    usePhoto(size.photoWidth, size.photoHeight, size.clientWidth, size.clientHeight);
    plainCopy();
    const size_t before = memoryNow().resting;
    enter();
    tellMemory("memory_after_entry", memoryNow().resting, before);
    takeLargeSoftBrush();
    paint();
    tellMemory("memory_after_stroke", memoryNow().resting, before);
    repaintPart("repaint_48x48_plain");
    drawOutline();
    repaintPart("repaint_48x48_selection_20k");
    dragSelection();
    nudgeSelection();
    stepColour();
    stepContrast();
    idle();
    tellMemory("memory_at_rest", memoryNow().resting, before);
    tellMemory("memory_peak", memoryNow().peak, before);
    leave();
}

static std::string nameOf(const testing::TestParamInfo<Size>& info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Photo, Feel, testing::ValuesIn(feltSizes), nameOf);
