// The library's window before anything is stored, and where it opens.
#include <algorithm>

#include "tests/session/library_fixture.h"
#include "tests/session/screen_part.h"

struct LibraryLook : LibrarySession {
    // Pixels of the list's rows [top, bottom) that are not of the window's colour.
    int inkIn(int top, int bottom)
    {
        const reference::StoredPicture shown = shownBy(libraryList(host));
        const COLORREF window = GetSysColor(COLOR_WINDOW);
        int ink = 0;
        for (int y = top; y < bottom; ++y)
            for (int x = 0; x < shown.width; ++x) {
                const size_t row = (size_t)(shown.height - 1 - y) * (size_t)reference::strideOf(shown.width);
                const uint8_t* pixel = &shown.bytes[row + 3 * (size_t)x];
                ink += RGB(pixel[2], pixel[1], pixel[0]) != window;
            }
        return ink;
    }

    RECT rectOf(HWND window)
    {
        RECT rect;
        GetWindowRect(window, &rect);
        return rect;
    }
};

TEST_F(LibraryLook, AnEmptyListShowsWhatToDo)
{
    ASSERT_TRUE(openOver(300, 200));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(settle(&host));
    EXPECT_EQ(0, inkIn(0, 6)) << "no dotted rectangle";
    EXPECT_GT(inkIn(6, 180), 500);
    ASSERT_TRUE(moveLibraryAside(&host));

    ASSERT_TRUE(clickControl(&host, ID_SELECTION));
    ASSERT_TRUE(drawSelection(&host, {{40, 40}, {120, 45}, {110, 120}, {50, 110}}));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    ASSERT_EQ(1, storedCount(host));
    RECT item;
    SendMessageA(libraryList(host), LB_GETITEMRECT, 0, (LPARAM)&item);
    RECT list;
    GetClientRect(libraryList(host), &list);
    EXPECT_EQ(0, inkIn(item.bottom, list.bottom)) << "the hint is gone";

    SendMessageA(libraryList(host), LB_SETCURSEL, 0, 0);
    ASSERT_TRUE(askToDelete(&host));
    ASSERT_TRUE(answer(&host, IDYES));
    EXPECT_GT(inkIn(6, 180), 500) << "and there again";
    EXPECT_EQ(0, inkIn(0, 6));
}

TEST_F(LibraryLook, TheListFillsTheWindowFromTheStart)
{
    ASSERT_TRUE(openOver(300, 200));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    RECT client, list = rectOf(libraryList(host));
    GetClientRect(libraryWindow(host), &client);
    MapWindowPoints(nullptr, libraryWindow(host), (POINT*)&list, 2);
    EXPECT_EQ(client.right, list.right);
    EXPECT_EQ(client.bottom, list.bottom);
    EXPECT_EQ(0, list.left);
}

// Right of the palette, or left of it where the photo or the screen's border is in the way.
TEST_F(LibraryLook, OpensBesideThePaletteAndLeavesThePhotosMiddleFree)
{
    for (const POINT at : {POINT{20, 40}, POINT{1100, 40}, POINT{1520, 40}, POINT{420, 40}}) {
        palettePos = at;
        ASSERT_TRUE(openOver(900, 500));
        CheckDlgButton(host.palette, ID_LIBRARY, BST_CHECKED);
        PostMessageW(host.palette, WM_COMMAND, ID_LIBRARY, 0);
        ASSERT_TRUE(waitUntil("the library", [&] { return IsWindowVisible(libraryWindow(host)) != 0; }));
        const RECT library = rectOf(libraryWindow(host)), palette = rectOf(host.palette), photo = rectOf(host.dialog);
        EXPECT_FALSE(PtInRect(&library, {(photo.left + photo.right) / 2, (photo.top + photo.bottom) / 2})) << at.x;
        EXPECT_TRUE(library.left == palette.right || library.right == palette.left) << at.x;
        EXPECT_EQ(palette.top, library.top);
        EXPECT_LE(library.right, GetSystemMetrics(SM_CXSCREEN));
        PostMessageW(host.palette, WM_COMMAND, ID_CLOSE, 0);
        ASSERT_TRUE(waitForReturn(&host));
    }
}
