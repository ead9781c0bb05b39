#include "tests/session/contrast_fixture.h"

#include <algorithm>
#include <cstring>

#include "tests/session/screen_part.h"
#include "tests/session/screen_picture.h"

constexpr int TEMPLATE_HEIGHT = 115;  // dialog units

reference::StoredPicture imageOf(const Block& block, int width, int height)
{
    const uint8_t* rows = block.data() + sizeof(BITMAPINFOHEADER);
    return {width, height, Block(rows, rows + (size_t)reference::strideOf(width) * (size_t)height)};
}

Block adjustedBlock(const Block& block, const HostImage& photo, const reference::Values& values)
{
    const reference::StoredPicture adjusted = reference::adjustImage(imageOf(block, photo.width, photo.height), values);
    Block result = block;
    memcpy(result.data() + sizeof(BITMAPINFOHEADER), adjusted.bytes.data(), adjusted.bytes.size());
    return result;
}

// The preview before it is adjusted. Stored row r takes the source row of r - 1.
static reference::StoredPicture sampled(const reference::StoredPicture& source, SIZE client)
{
    long long width = (long long)source.width * client.cy / source.height, height = client.cy;
    if (width > client.cx) {
        width = client.cx;
        height = (long long)source.height * client.cx / source.width;
    }
    const size_t stride = (size_t)reference::strideOf((int)width),
                 sourceStride = (size_t)reference::strideOf(source.width);
    reference::StoredPicture preview = {(int)width, (int)height, Block(stride * (size_t)height)};
    for (long long row = 0; row < height; ++row) {
        const long long from = row ? std::min((row - 1) * source.height / height, (long long)source.height - 1) : 0;
        for (long long x = 0; x < width; ++x) {
            const long long column = std::min(x * source.width / width, (long long)source.width - 1);
            memcpy(&preview.bytes[stride * (size_t)row + 3 * (size_t)x],
                   &source.bytes[sourceStride * (size_t)from + 3 * (size_t)column], 3);
        }
    }
    return preview;
}

static BOOL CALLBACK findContrastDialog(HWND window, LPARAM lp)
{
    const bool found = IsWindowVisible(window) && GetDlgItem(window, ID_RESET_HUE) && GetDlgItem(window, ID_HUE_BAR);
    if (found) *(HWND*)lp = window;
    return !found;
}

void Contrast::SetUp()
{
    SessionTest::SetUp();
    palettePos = {20, 40};
}

bool Contrast::findDialog()
{
    dialog = nullptr;
    EnumThreadWindows(host.threadId, findContrastDialog, (LPARAM)&dialog);
    return dialog != nullptr;
}

void Contrast::openSessionHere()
{
    OffsetRect(&dialogRect, 100 - dialogRect.left, 0);
    spoilPadding();
    ASSERT_TRUE(open());
    before = snapshot(photo);
}

void Contrast::openDialog()
{
    if (!host.running) openSessionHere();
    ASSERT_TRUE(clickControl(&host, ID_CONTRAST));
    ASSERT_TRUE(waitUntil("the contrast dialog to open", [&] { return findDialog(); }));
    leavePalette();
}

void Contrast::spoilPadding()
{
    const size_t stride = (size_t)reference::strideOf(photo.width);
    uint8_t* rows = (uint8_t*)GlobalLock(photo.block) + sizeof(BITMAPINFOHEADER);
    for (int y = 0; y < photo.height; ++y)
        for (size_t x = (size_t)photo.width * 3; x < stride; ++x)
            rows[stride * (size_t)y + x] = 0x5A;
    GlobalUnlock(photo.block);
}

RECT Contrast::controlRect(int id) const
{
    RECT rect = {};
    GetWindowRect(GetDlgItem(dialog, id), &rect);
    return rect;
}

POINT Contrast::middleOf(int id) const
{
    const RECT rect = controlRect(id);
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

void Contrast::click(int id)
{
    ASSERT_TRUE(movePointer(&host, middleOf(id)));
    ASSERT_TRUE(pressButton(&host));
    ASSERT_TRUE(releaseButton(&host));
}

void Contrast::clickToClose(int id)
{
    click(id);
    ASSERT_TRUE(waitUntil("the contrast dialog to close", [&] { return !findDialog(); }));
    ASSERT_TRUE(settle(&host));
}

void Contrast::scroll(int bar, int code, int value)
{
    PostMessageA(dialog, WM_VSCROLL, MAKEWPARAM(code, value), (LPARAM)GetDlgItem(dialog, bar));
    ASSERT_TRUE(settle(&host));
}

void Contrast::set(const reference::Values& values)
{
    drag(ID_CONTRAST_BAR, values.contrast);
    drag(ID_BRIGHTNESS_BAR, values.brightness);
    drag(ID_SATURATION_BAR, values.saturation);
    drag(ID_HUE_BAR, values.hue);
    scroll(ID_HUE_BAR, SB_ENDSCROLL);
}

RECT Contrast::previewOnScreen(const reference::StoredPicture& preview) const
{
    RECT client;
    GetClientRect(dialog, &client);
    RECT rect = {client.right - preview.width, 0, client.right, preview.height};
    MapWindowPoints(dialog, nullptr, (POINT*)&rect, 2);
    return rect;
}

reference::StoredPicture Contrast::preview() const
{
    RECT client;
    GetClientRect(dialog, &client);
    return sampled(imageOf(before, photo.width, photo.height), {client.right, client.bottom});
}

void Contrast::expectShown(const reference::StoredPicture& expected)
{
    if (expected.width == 0) return;  // no room: no preview
    const RECT place = previewOnScreen(expected);
    // Of a narrow image's preview the last bar covers a few columns.
    const RECT free = {controlRect(ID_HUE_BAR).right, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    RECT visible;
    ASSERT_TRUE(IntersectRect(&visible, &place, &free));
    const size_t skip = (size_t)(visible.left - place.left) * 3;
    const reference::StoredPicture shown = screenPart(visible);
    const size_t stride = (size_t)reference::strideOf(expected.width),
                 shownStride = (size_t)reference::strideOf(shown.width);
    const int below = place.bottom - visible.bottom;
    for (int row = 0; row < shown.height; ++row) {
        if (!memcmp(&expected.bytes[stride * (size_t)(row + below) + skip], &shown.bytes[shownStride * (size_t)row],
                    (size_t)shown.width * 3))
            continue;
        ADD_FAILURE() << "the preview on the screen differs in row " << row << " from below";
        savePicture("preview");
        return;
    }
}

void Contrast::expectGeometry()
{
    RECT window, client, button, bar = controlRect(ID_HUE_BAR), units = {0, 0, 193, TEMPLATE_HEIGHT};
    GetWindowRect(dialog, &window);
    GetClientRect(dialog, &client);
    GetWindowRect(GetDlgItem(host.palette, ID_CONTRAST), &button);
    MapWindowPoints(nullptr, dialog, (POINT*)&bar, 2);
    MapDialogRect(dialog, &units);
    EXPECT_EQ(units.bottom, client.bottom);
    const LONG height = window.bottom - window.top;
    const LONG width = bar.right + (LONG)((long long)height * photo.width / photo.height);
    EXPECT_EQ(width, window.right - window.left);
    const LONG left = std::min(button.right, GetSystemMetrics(SM_CXSCREEN) - width);
    const LONG top = std::min(button.top, GetSystemMetrics(SM_CYSCREEN) - height);
    EXPECT_EQ(std::max(0L, left), window.left);
    EXPECT_EQ(std::max(0L, top), window.top);
}

void Contrast::expectAfterOk(const reference::Values& values)
{
    const Block expected = adjustedBlock(before, photo, values);
    EXPECT_FALSE(expected == before) << "a picture that does not change proves nothing";
    EXPECT_TRUE(expected == snapshot(photo)) << "contrast " << values.contrast << " brightness " << values.brightness
                                             << " saturation " << values.saturation << " hue " << values.hue;
}
