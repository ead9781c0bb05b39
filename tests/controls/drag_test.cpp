#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <string>
#include <thread>

#include "control_dialog.h"

constexpr int PICTURE_WIDTH = 30, PICTURE_HEIGHT = 20;
static const RECT place = {10, 10, 50, 40};  // the picture stands in its middle: at (15, 15)
constexpr COLORREF BACKGROUND_COLOUR = RGB(192, 192, 192);

// The left half is the background, the right half dark.
static HGLOBAL packedPicture()
{
    const int stride = (PICTURE_WIDTH * 3 + 3) & ~3;
    HGLOBAL block = GlobalAlloc(GHND, sizeof(BITMAPINFOHEADER) + stride * PICTURE_HEIGHT);
    BITMAPINFOHEADER* header = (BITMAPINFOHEADER*)GlobalLock(block);
    header->biSize = sizeof *header;
    header->biWidth = PICTURE_WIDTH;
    header->biHeight = PICTURE_HEIGHT;
    header->biPlanes = 1;
    header->biBitCount = 24;
    BYTE* bits = (BYTE*)(header + 1);
    for (int y = 0; y < PICTURE_HEIGHT; ++y)
        memset(bits + y * stride, 192, PICTURE_WIDTH / 2 * 3);
    GlobalUnlock(block);
    return block;
}

static BOOL CALLBACK takePicture(HWND window, LPARAM found)
{
    wchar_t name[64];
    GetClassNameW(window, name, 64);
    const bool topmost = (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
    if (lstrcmpiW(name, L"Static") != 0 || !topmost || !IsWindowVisible(window)) return TRUE;
    *(HWND*)found = window;
    return FALSE;
}

static HWND pictureWindow(DWORD thread)
{
    HWND found = nullptr;
    EnumThreadWindows(thread, takePicture, (LPARAM)&found);
    return found;
}

static bool poll(const std::function<bool()>& condition)
{
    const DWORD start = GetTickCount();
    while (!condition()) {
        if (GetTickCount() - start > WAIT_LIMIT_MS) return false;
        Sleep(5);
    }
    return true;
}

// The dialog starts a drag when it is pressed; `hand` runs on a thread of its own meanwhile.
struct Drag : testing::Test {
    HWND dialog = openDialog({});
    HGLOBAL block = packedPicture();
    DWORD thread = GetCurrentThreadId();
    std::atomic<int> result{-1};
    std::atomic<bool> drags{false};
    POINT start = {30, 25};  // in the client area

    void SetUp() override
    {
        ASSERT_TRUE(dialog);
        ASSERT_TRUE(activate(dialog));
        ClientToScreen(dialog, &start);
        dialogLog.handler = [this](HWND, UINT message, WPARAM, LPARAM lp) -> INT_PTR {
            if (message == WM_APP) ReleaseCapture();
            if (message != WM_LBUTTONDOWN) return 0;
            const POINT grab = {(short)LOWORD(lp) - place.left, (short)HIWORD(lp) - place.top};
            drags = true;
            result = controlLibrary().dragBitmap(dialog, block, &place, grab, BACKGROUND_COLOUR);
            return TRUE;
        };
    }
    void TearDown() override
    {
        closeDialog(dialog);
        GlobalFree(block);
    }

    // Presses the button, lets `hand` go on when the picture is up, and waits for the drag's end.
    bool drag(const std::function<void(HWND picture)>& hand)
    {
        movePointer(start);
        if (!waitFor(dialog, [&] { return WindowFromPoint(start) == dialog; })) return false;
        pressLeft();
        std::thread other([&] {
            HWND picture = nullptr;
            poll([&] { return (picture = pictureWindow(thread)) != nullptr || result >= 0; });
            hand(picture);
        });
        const bool ended = waitFor(dialog, [&] { return result >= 0; });
        other.join();
        releaseLeft();
        waitFor(dialog, [] { return GetKeyState(VK_LBUTTON) >= 0; });
        return ended;
    }
};

static POINT originOf(HWND window)
{
    RECT rect = {};
    GetWindowRect(window, &rect);
    return {rect.left, rect.top};
}

TEST_F(Drag, PictureFollowsThePointerAndDropsOnRelease)
{
    POINT first = {}, moved = {};
    bool followed = false, seen = false;
    RECT size = {};
    ASSERT_TRUE(drag([&](HWND picture) {
        seen = picture != nullptr;
        first = originOf(picture);
        GetWindowRect(picture, &size);
        movePointer({start.x + 300, start.y + 200});  // far outside the dialog
        followed = poll([&] {
            moved = originOf(picture);
            return moved.x == first.x + 300 && moved.y == first.y + 200;
        });
        releaseLeft();
    }));
    EXPECT_TRUE(seen);
    EXPECT_EQ(start.x - 15, first.x);
    EXPECT_EQ(start.y - 10, first.y);
    EXPECT_EQ(PICTURE_WIDTH, size.right - size.left);
    EXPECT_EQ(PICTURE_HEIGHT, size.bottom - size.top);
    EXPECT_TRUE(followed) << "at " << moved.x << ", " << moved.y;
    EXPECT_EQ(1, result);
    EXPECT_FALSE(pictureWindow(thread));
    EXPECT_EQ(nullptr, GetCapture());
}

TEST_F(Drag, BackgroundIsLeftOut)
{
    bool left = true, right = false;
    ASSERT_TRUE(drag([&](HWND picture) {
        HRGN shape = CreateRectRgn(0, 0, 0, 0);
        GetWindowRgn(picture, shape);
        left = PtInRegion(shape, 5, 10);
        right = PtInRegion(shape, 20, 10);
        DeleteObject(shape);
        releaseLeft();
    }));
    EXPECT_FALSE(left);
    EXPECT_TRUE(right);
    EXPECT_EQ(1, result);
}

TEST_F(Drag, EscapeCancels)
{
    ASSERT_TRUE(drag([](HWND) { typeKey(VK_ESCAPE); }));
    EXPECT_TRUE(drags);
    EXPECT_EQ(0, result);
    EXPECT_FALSE(pictureWindow(thread));
    EXPECT_EQ(nullptr, GetCapture());
}

TEST_F(Drag, RightButtonCancels)
{
    ASSERT_TRUE(drag([](HWND) {
        INPUT inputs[2] = {};
        inputs[0].mi.dwFlags = MOUSEEVENTF_RIGHTDOWN;
        inputs[1].mi.dwFlags = MOUSEEVENTF_RIGHTUP;
        SendInput(2, inputs, sizeof *inputs);
    }));
    EXPECT_EQ(0, result);
}

TEST_F(Drag, LossOfTheCaptureCancels)
{
    ASSERT_TRUE(drag([&](HWND) { SendMessageW(dialog, WM_APP, 0, 0); }));
    EXPECT_EQ(0, result);
    EXPECT_FALSE(pictureWindow(thread));
}

TEST_F(Drag, DestroyedDialogCancels)
{
    dialogLog.handler = [this, inner = dialogLog.handler](HWND window, UINT message, WPARAM wp, LPARAM lp) -> INT_PTR {
        if (message == WM_APP + 1) return DestroyWindow(window);
        return inner(window, message, wp, lp);
    };
    ASSERT_TRUE(drag([&](HWND) { PostMessageW(dialog, WM_APP + 1, 0, 0); }));
    EXPECT_EQ(0, result);
    EXPECT_FALSE(pictureWindow(thread));
}

TEST_F(Drag, QuitMessageStaysForTheLoopOutside)
{
    movePointer(start);
    ASSERT_TRUE(waitFor(dialog, [&] { return WindowFromPoint(start) == dialog; }));
    pressLeft();
    ASSERT_TRUE(poll([] { return GetAsyncKeyState(VK_LBUTTON) < 0; }));
    PostQuitMessage(7);
    EXPECT_EQ(0, controlLibrary().dragBitmap(dialog, block, &place, POINT{1, 1}, BACKGROUND_COLOUR));
    releaseLeft();
    MSG message = {};
    EXPECT_TRUE(poll([&] { return PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != 0; }));
    EXPECT_EQ(7u, message.wParam);
    dialogLog.handler = nullptr;
    EXPECT_TRUE(waitFor(dialog, [] { return GetKeyState(VK_LBUTTON) >= 0; }));
}

TEST_F(Drag, DoesNotStartWithoutAPressedButton)
{
    EXPECT_EQ(0, controlLibrary().dragBitmap(dialog, block, &place, POINT{1, 1}, BACKGROUND_COLOUR));
}

TEST_F(Drag, DoesNotStartWithoutASoundBitmap)
{
    movePointer(start);
    pressLeft();
    ASSERT_TRUE(poll([] { return GetAsyncKeyState(VK_LBUTTON) < 0; }));
    EXPECT_EQ(0, controlLibrary().dragBitmap(dialog, nullptr, &place, POINT{1, 1}, BACKGROUND_COLOUR));
    EXPECT_EQ(0, controlLibrary().dragBitmap(nullptr, block, &place, POINT{1, 1}, BACKGROUND_COLOUR));
    EXPECT_EQ(0, controlLibrary().dragBitmap(dialog, block, nullptr, POINT{1, 1}, BACKGROUND_COLOUR));
    static const struct {
        const char* name;
        void (*spoil)(BITMAPINFOHEADER*);
    } cases[] = {
        {"depth", [](BITMAPINFOHEADER* h) { h->biBitCount = 8; }},
        {"width", [](BITMAPINFOHEADER* h) { h->biWidth = 0; }},
        {"negative height", [](BITMAPINFOHEADER* h) { h->biHeight = -PICTURE_HEIGHT; }},
        {"more rows than the block", [](BITMAPINFOHEADER* h) { h->biHeight = 2 * PICTURE_HEIGHT; }},
        {"overflowing width", [](BITMAPINFOHEADER* h) { h->biWidth = 0x7FFFFFFF; }},
        {"header size", [](BITMAPINFOHEADER* h) { h->biSize = 0x7FFFFFFF; }},
    };
    for (const auto& one : cases) {
        HGLOBAL spoiled = packedPicture();
        one.spoil((BITMAPINFOHEADER*)GlobalLock(spoiled));
        GlobalUnlock(spoiled);
        EXPECT_EQ(0, controlLibrary().dragBitmap(dialog, spoiled, &place, POINT{1, 1}, BACKGROUND_COLOUR)) << one.name;
        GlobalFree(spoiled);
    }
    dialogLog.handler = nullptr;
    releaseLeft();
    EXPECT_TRUE(waitFor(dialog, [] { return GetKeyState(VK_LBUTTON) >= 0; }));
}
