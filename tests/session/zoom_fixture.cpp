#include "tests/session/zoom_fixture.h"

#include <cwchar>

#include "tests/session/pointer_guard.h"

static void paintOwnColours(const HostImage& photo)
{
    uint8_t* const bits = (uint8_t*)GlobalLock(photo.block) + sizeof(BITMAPINFOHEADER);
    const size_t stride = (size_t)(photo.width * 3 + 3) & ~(size_t)3;
    for (int y = 0; y < photo.height; ++y) {
        uint8_t* pixel = bits + stride * (size_t)(photo.height - 1 - y);
        for (int x = 0; x < photo.width; ++x, pixel += 3) {
            pixel[0] = (uint8_t)x;
            pixel[1] = (uint8_t)y;
            pixel[2] = (uint8_t)(x >> 8 | (y >> 8) << 4);
        }
    }
    GlobalUnlock(photo.block);
}

ShownPixel pixelOfColour(const uint8_t* bgr)
{
    return {bgr[0] | (bgr[2] & 15) << 8, bgr[1] | (bgr[2] >> 4) << 8};
}

static const uint8_t* at(const reference::StoredPicture& shown, int x, int y)
{
    return shown.bytes.data() + (size_t)reference::strideOf(shown.width) * (size_t)(shown.height - 1 - y) + 3 * x;
}

void ZoomSession::openOwnColours(int width, int height, int canvasWidth, int canvasHeight)
{
    usePhoto(width, height, canvasWidth, canvasHeight);
    paintOwnColours(photo);
    ASSERT_TRUE(open());
    RECT client;
    GetClientRect(host.canvas, &client);
    clientWidth = client.right;
    clientHeight = client.bottom;
    name = title();
    ASSERT_EQ(canvasWidth, clientWidth);
    ASSERT_EQ(canvasHeight, clientHeight);
}

void ZoomSession::closeSession()
{
    ASSERT_TRUE(clickControl(&host, ID_CLOSE));
    ASSERT_TRUE(waitForReturn(&host));
    checkReturned(0);
}

std::wstring ZoomSession::title() const
{
    wchar_t text[256] = L"";
    GetWindowTextW(host.dialog, text, 256);
    return text;
}

int ZoomSession::percent() const
{
    const std::wstring text = title(), before = name.empty() ? name : name + L" - ";
    int value = 0;
    if (text == name || text.compare(0, before.size(), before) != 0) return 0;
    return swscanf(text.c_str() + before.size(), L"%d %%", &value) == 1 ? value : 0;
}

static bool sendAndSee(Host* host, DWORD flags, DWORD data, UINT message)
{
    const size_t first = seenCount();
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.mouseData = data;
    SendInput(1, &input, sizeof input);
    return waitUntil("the wheel or button to be retrieved", [&] { return wasSeen(first, nullptr, message); }) &&
           settle(host);
}

bool ZoomSession::turnWheel(int delta)
{
    return sendAndSee(&host, MOUSEEVENTF_WHEEL, (DWORD)delta, WM_MOUSEWHEEL);
}

bool ZoomSession::tiltWheel(int delta)
{
    return sendAndSee(&host, MOUSEEVENTF_HWHEEL, (DWORD)delta, WM_MOUSEHWHEEL);
}

bool ZoomSession::pressMiddle()
{
    return sendAndSee(&host, MOUSEEVENTF_MIDDLEDOWN, 0, WM_MBUTTONDOWN);
}

bool ZoomSession::releaseMiddle()
{
    return sendAndSee(&host, MOUSEEVENTF_MIDDLEUP, 0, WM_MBUTTONUP);
}

static void sendKey(WORD key, bool down)
{
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    SendInput(1, &input, sizeof input);
}

void ZoomSession::holdKey(WORD key, bool down)
{
    const size_t first = seenCount();
    sendKey(key, down);
    waitUntil("the key", [&] { return wasSeen(first, nullptr, down ? WM_KEYDOWN : WM_KEYUP); });
    settle(&host);
}

bool ZoomSession::tapKey(WORD key, std::vector<WORD> held)
{
    for (WORD modifier : held)
        sendKey(modifier, true);
    const size_t first = seenCount();
    sendKey(key, true);
    sendKey(key, false);
    for (WORD modifier : held)
        sendKey(modifier, false);
    const auto released = [&] {
        for (const SeenMessage& seen : seenSince(first))
            if (seen.message == WM_KEYUP && seen.wParam == key) return true;
        return false;
    };
    return waitUntil("the key to be let go", released) && settle(&host);
}

bool ZoomSession::zoomTo(int wanted)
{
    for (int i = 0; i < 15 && percent() != wanted; ++i)
        if (!tapKey(percent() < wanted ? VK_ADD : VK_SUBTRACT)) return false;
    return percent() == wanted;
}

ShownPixel ZoomSession::shownAt(int x, int y) const
{
    const POINT screen = onCanvas(host, x, y);
    const reference::StoredPicture part = screenPart({screen.x, screen.y, screen.x + 1, screen.y + 1});
    return pixelOfColour(part.bytes.data());
}

POINT ZoomSession::imageCorner(int wanted) const
{
    const int block = wanted / 100;
    const ShownPixel first = shownAt(0, 0);
    int x = 0, y = 0;
    while (shownAt(x, 0).x == first.x)
        ++x;
    while (shownAt(0, y).y == first.y)
        ++y;
    return {x - (first.x + 1) * block, y - (first.y + 1) * block};
}

// So many screen pixels for so many image pixels.
static void ratioOf(int percent, int* screen, int* image)
{
    *screen = percent == 33 ? 1 : percent == 67 ? 2 : percent;
    *image = percent == 33 || percent == 67 ? 3 : 100;
}

// Along one axis: `screen` screen pixels further lie `image` image pixels further, and the order is kept.
static bool inOrder(int before, int now, int further, int screen, int image)
{
    return now >= before && (further < 0 || further == image) && now - before <= (image + screen - 1) / screen;
}

void ZoomSession::expectShown(int wanted, const char* when) const
{
    const reference::StoredPicture shown = shownBy(host.canvas);
    int screen, image;
    ratioOf(wanted, &screen, &image);
    for (int divisor = 100; divisor > 1; --divisor) {
        if (screen % divisor == 0 && image % divisor == 0) {
            screen /= divisor;
            image /= divisor;
        }
    }
    const int rows = clientHeight * 3 / 4 - 7;  // the map is below
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < clientWidth; ++x) {
            const ShownPixel now = pixelOfColour(at(shown, x, y));
            const ShownPixel left = pixelOfColour(at(shown, x ? x - 1 : x, y));
            const ShownPixel above = pixelOfColour(at(shown, x, y ? y - 1 : y));
            const int across = x < screen ? -1 : now.x - pixelOfColour(at(shown, x - screen, y)).x;
            const int down = y < screen ? -1 : now.y - pixelOfColour(at(shown, x, y - screen)).y;
            ASSERT_TRUE(now.x < photo.width && now.y < photo.height && left.y == now.y && above.x == now.x &&
                        inOrder(left.x, now.x, across, screen, image) && inOrder(above.y, now.y, down, screen, image))
                << when << ": at (" << x << ", " << y << ") the canvas shows pixel (" << now.x << ", " << now.y << ")";
        }
    }
}

static bool pointerIsOutside(const Host& host)
{
    bool inside = false;
    for (const SeenMessage& seen : seenSince(0)) {
        if (seen.window == host.canvas && seen.message == POINTER_ENTERED) inside = true;
        if (seen.window == host.canvas && seen.message == POINTER_LEFT) inside = false;
    }
    return !inside;
}

void ZoomSession::leaveCanvas()
{
    ASSERT_TRUE(placePointer(&host, pointerRest()));
    ASSERT_TRUE(waitUntil("the pointer to be outside", [&] { return pointerIsOutside(host); }));
    ASSERT_TRUE(settle(&host));
}

void ZoomSession::expectRepaintChangesNothing(const char* when)
{
    ASSERT_NO_FATAL_FAILURE(leaveCanvas());
    ASSERT_TRUE(showsWhatAFullRepaintShows(&host)) << when;
}
