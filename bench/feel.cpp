// What a hand feels: whole sessions with real windows and a real pointer, over photos of 6, 24 and 48 megapixels.
// Prints
//
//     FEEL <name> <value> <unit>
//
// Where a time ends with a picture, it ends when the pixels on the screen change, not when a function returns.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "tests/session/selection_fixture.h"

#include <psapi.h>

static const Size feltSizes[] = {
    {"6mp", 3000, 2000, 900, 600}, {"24mp", 6000, 4000, 900, 600}, {"48mp", 8000, 6000, 800, 600}};
constexpr double LIMIT_MS = 20000;
constexpr int MOVES = 25, ROUNDS = 9;

static double millisecondsNow()
{
    LARGE_INTEGER count, frequency;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return 1000.0 * (double)count.QuadPart / (double)frequency.QuadPart;
}

static double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? -1 : values[values.size() / 2];
}

// ---- input, without waiting for anything

static void sendMouse(DWORD flags, POINT at = {0, 0})
{
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    const LONG width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    input.mi.dx = (at.x * 65536 + width - 1) / width;
    input.mi.dy = (at.y * 65536 + height - 1) / height;
    SendInput(1, &input, sizeof input);
}

static void sendMove(POINT screen)
{
    sendMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, screen);
}

// ---- the screen

static std::vector<uint8_t> around(POINT screen)
{
    return screenPart({screen.x - 3, screen.y - 3, screen.x + 4, screen.y + 4}).bytes;
}

template <typename Action>
static double untilPixelsChange(POINT screen, Action action)
{
    const std::vector<uint8_t> before = around(screen);
    const double start = millisecondsNow();
    action();
    while (around(screen) == before)
        if (millisecondsNow() - start > LIMIT_MS) {
            ADD_FAILURE() << "nothing changes at " << screen.x << ", " << screen.y;
            return -1;
        }
    return millisecondsNow() - start;
}

// ---- the process

static double processorMilliseconds()
{
    FILETIME made, ended, kernel, user;
    GetProcessTimes(GetCurrentProcess(), &made, &ended, &kernel, &user);
    const auto whole = [](FILETIME time) { return ((ULONGLONG)time.dwHighDateTime << 32 | time.dwLowDateTime) / 1e4; };
    return whole(kernel) + whole(user);
}

static PROCESS_MEMORY_COUNTERS memoryNow()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters;
}

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
        while (!wasSeen(first, window, message) && millisecondsNow() - start < LIMIT_MS) {
        }
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

    // The last change in the middle of the canvas before everything is at rest.
    void enter()
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
            Sleep(1);  // leaves the session the processors
            ASSERT_LT(millisecondsNow() - start, LIMIT_MS);
        }
        ASSERT_TRUE(settle(&host));
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
        model = beginModel(host, photo);
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
        floatDrawnOutline(&model, host, first);
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
        const double start = millisecondsNow();
        sendMouse(MOUSEEVENTF_LEFTUP);
        while (host.running && millisecondsNow() - start < LIMIT_MS) {
        }
        tell("close_to_return", millisecondsNow() - start, "ms");
        ASSERT_TRUE(waitForReturn(&host));
    }

    // To be asked before an outline is drawn: the model of it takes more than the session.
    void tellMemory(const char* name, SIZE_T bytes, SIZE_T before) const
    {
        tell(name, ((double)bytes - (double)before) / 1e6 / megapixels(), "MB/MP");
    }
};

TEST_P(Feel, Session)
{
    const Size& size = GetParam();
    usePhoto(size.photoWidth, size.photoHeight, size.clientWidth, size.clientHeight);
    plainCopy();
    const SIZE_T before = memoryNow().WorkingSetSize;
    enter();
    tellMemory("memory_after_entry", memoryNow().WorkingSetSize, before);
    takeLargeSoftBrush();
    paint();
    tellMemory("memory_after_stroke", memoryNow().WorkingSetSize, before);
    drawOutline();
    stepColour();
    stepContrast();
    idle();
    leave();
}

static std::string nameOf(const testing::TestParamInfo<Size>& info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Photo, Feel, testing::ValuesIn(feltSizes), nameOf);
