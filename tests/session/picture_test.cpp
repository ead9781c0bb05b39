// Every button of every dialog shows its picture as it was drawn: pixel for pixel, in the middle.
#include <windows.h>

#include <cstdlib>
#include <cstring>

#include "tests/session/library_fixture.h"
#include "tests/session/screen_part.h"

struct Drawing {
    int width, height;
    std::vector<uint8_t> pixels;  // blue, green, red, alpha; bottom row first; colours multiplied by alpha
};

static Drawing drawingOf(HMODULE library, int id)
{
    Drawing drawing = {};
    const HRSRC found = FindResourceA(library, MAKEINTRESOURCEA(id), (LPCSTR)RT_BITMAP);
    if (!found) return drawing;
    const uint8_t* data = (const uint8_t*)LockResource(LoadResource(library, found));
    BITMAPINFOHEADER header;
    memcpy(&header, data, sizeof header);
    drawing.width = header.biWidth, drawing.height = header.biHeight;
    const uint8_t* first = data + sizeof header;
    drawing.pixels.assign(first, first + (size_t)4 * drawing.width * drawing.height);
    return drawing;
}

static const uint8_t* pixelAt(const reference::StoredPicture& image, int x, int y)
{
    return &image.bytes[(size_t)(y * reference::strideOf(image.width) + 3 * x)];
}

// What is opaque shows exactly, what is half transparent is mixed with the button's face, rounded either way.
static bool showsPixel(const uint8_t* shown, const uint8_t* drawn, const uint8_t* face)
{
    for (int channel = 0; channel < 3; ++channel) {
        const double wanted = drawn[channel] + face[channel] * (255 - drawn[3]) / 255.0;
        if (abs((int)(shown[channel] - wanted)) > (drawn[3] == 255 ? 0 : 1)) return false;
    }
    return true;
}

static bool showsAt(const reference::StoredPicture& screen, const Drawing& drawing, int left, int bottom)
{
    const uint8_t* face = pixelAt(screen, 2, 2);
    for (int y = 0; y < drawing.height; ++y)
        for (int x = 0; x < drawing.width; ++x) {
            const uint8_t* drawn = &drawing.pixels[(size_t)4 * (size_t)(y * drawing.width + x)];
            if (drawn[3] && !showsPixel(pixelAt(screen, left + x, bottom + y), drawn, face)) return false;
        }
    return true;
}

// In the middle, or half a pixel beside it.
static bool showsInTheMiddle(const reference::StoredPicture& screen, const Drawing& drawing)
{
    const int left = (screen.width - drawing.width) / 2, bottom = (screen.height - drawing.height) / 2;
    for (int x : {left, left + 1})
        for (int y : {bottom, bottom + 1})
            if (x + drawing.width <= screen.width && y + drawing.height <= screen.height &&
                showsAt(screen, drawing, x, y))
                return true;
    return false;
}

struct ButtonPictures : LibrarySession {
    int checked = 0;

    // The table as the library holds it: four words of head, then control and three pictures each.
    void expectTable(HWND dialog, int table)
    {
        const HRSRC found = FindResourceA(library.module, MAKEINTRESOURCEA(table), (LPCSTR)RT_RCDATA);
        ASSERT_TRUE(found) << table;
        const WORD* words = (const WORD*)LockResource(LoadResource(library.module, found));
        for (int entry = 1; entry <= words[0]; ++entry) {
            const HWND control = GetDlgItem(dialog, words[4 * entry]);
            if (!control) continue;
            const Drawing drawing = drawingOf(library.module, words[4 * entry + 1]);
            EXPECT_TRUE(showsInTheMiddle(shownBy(control), drawing)) << "control " << words[4 * entry];
            ++checked;
        }
    }
};

TEST_F(ButtonPictures, AreShownPixelForPixel)
{
    const HDC screen = GetDC(nullptr);
    ASSERT_EQ(96, GetDeviceCaps(screen, LOGPIXELSY)) << "the sizes that the pictures are drawn for";
    ReleaseDC(nullptr, screen);

    ASSERT_TRUE(open());
    expectTable(host.palette, 100);
    expectTable(host.palette, 1000);
    ASSERT_TRUE(clickControl(&host, ID_LIBRARY));
    ASSERT_TRUE(waitUntil("the library", [&] { return libraryWindow(host) != nullptr; }));
    ASSERT_TRUE(settle(&host));
    expectTable(libraryWindow(host), 3000);
    PostMessageW(host.palette, WM_COMMAND, ID_CONTRAST, 0);
    ASSERT_TRUE(waitUntil("the contrast dialog", [&] { return dialogWith(host, ID_RESET_HUE) != nullptr; }));
    ASSERT_TRUE(settle(&host));
    expectTable(dialogWith(host, ID_RESET_HUE), 102);
    expectTable(dialogWith(host, ID_RESET_HUE), 2000);
    EXPECT_EQ(28, checked);
}
