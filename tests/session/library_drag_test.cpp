// Stored selections dragged from the library's list with the real pointer: where they float after a drop on
// the image, at what scale, and what is no drop at all.
#include "tests/session/library_fixture.h"
#include "tests/session/screen_part.h"

constexpr POINT AWAY = {700, 1000};  // on the desktop

struct LibraryDrag : LibrarySession {
    ReferenceSelection selection = roundSelection(11, 90, 64);

    // A session with one stored selection, the library's window out of the way, and Brush chosen.
    bool openWithStored(int width, int height, int clientWidth = 0, int clientHeight = 0)
    {
        putFile(1, referenceTiff(selection));
        return openOver(width, height, clientWidth, clientHeight) && toggleLibraryWindow(&host) &&
               moveLibraryAside(&host) && clickControl(&host, ID_BRUSH);
    }

    bool floats() { return isChecked(host, ID_SELECTION); }

    // Applies what floats and checks that it came from `rect`.
    void applyAndCheck(RECT rect)
    {
        const reference::Picture expected = withSelectionApplied(image(), selection, rect);
        ASSERT_TRUE(clickApply(rect));
        expectImage(expected);
    }

    // Moves the floating selection by dragging it from an image point inside; the scale is 1.
    bool moveFloating(POINT from, int dx, int dy)
    {
        return drawStroke(&host, {from, {from.x + dx / 2, from.y + dy / 2}, {from.x + dx, from.y + dy}});
    }

    // The canvas shows the selection at `rect`, except where outline and frame may be. The scale is 1.
    void expectShownAt(RECT rect)
    {
        ASSERT_TRUE(placePointer(&host, AWAY));
        const reference::StoredPicture part = shownBy(host.canvas);
        const reference::Picture shown = reference::fromStoredRows(part.bytes.data(), part.width, part.height);
        const reference::Picture expected = withSelectionApplied(image(), selection, rect);
        int compared = 0, inside = 0, wrong = 0;
        for (int y = 0; y < shown.height; ++y)
            for (int x = 0; x < shown.width; ++x) {
                if (nearOutlineOrFrame(x, y, rect)) continue;
                ++compared;
                inside += isInside(x - rect.left, y - rect.top);
                wrong += !(shown.at(x, y) == expected.at(x, y));
            }
        EXPECT_EQ(0, wrong);
        EXPECT_GT(inside, 1000);
        EXPECT_GT(compared, inside);
    }

    bool isInside(int x, int y)
    {
        return x >= 0 && y >= 0 && x < selection.mask.width && y < selection.mask.height &&
               selection.mask.at(x, y).red == 0;
    }

    bool nearOutlineOrFrame(int x, int y, RECT rect)
    {
        const POINT at = {x, y};
        RECT inner = rect, outer = rect;
        InflateRect(&inner, -3, -3);
        InflateRect(&outer, 2 * GetSystemMetrics(SM_CXFRAME) + 3, 2 * GetSystemMetrics(SM_CYFRAME) + 3);
        if (!PtInRect(&outer, at)) return false;
        if (!PtInRect(&inner, at)) return true;
        for (int dy = -2; dy <= 2; ++dy)
            for (int dx = -2; dx <= 2; ++dx)
                if (isInside(x + dx - rect.left, y + dy - rect.top) != isInside(x - rect.left, y - rect.top))
                    return true;
        return false;
    }

    // The canvas shows what it showed before, and nothing has become current.
    void expectNothingHappened(const reference::StoredPicture& shown)
    {
        ASSERT_TRUE(placePointer(&host, AWAY));  // there the brush has no outline
        EXPECT_FALSE(floats());
        EXPECT_TRUE(isChecked(host, ID_BRUSH));
        // The session looks every few milliseconds whether the pointer has left, and takes its outline away then.
        EXPECT_TRUE(waitUntil("the canvas to show what it showed before",
                              [&] { return shown.bytes == shownBy(host.canvas).bytes; }));
        expectUntouched();
    }
};

struct LibraryDragAtScale : LibraryDrag, testing::WithParamInterface<std::pair<SIZE, SIZE>> {};

TEST_P(LibraryDragAtScale, FloatsAroundTheImagePointUnderThePointer)
{
    const SIZE size = GetParam().first, client = GetParam().second;
    ASSERT_TRUE(openWithStored(size.cx, size.cy, client.cx, client.cy));
    const POINT drop = {client.cx / 2 + 20, client.cy / 2 + 12};
    ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, drop.x, drop.y)));
    EXPECT_TRUE(floats());
    expectUntouched();
    const POINT at = {drop.x * size.cx / client.cx, drop.y * size.cy / client.cy};
    applyAndCheck(placedRect(at, selection, image()));
    saveAndCheck();
}

INSTANTIATE_TEST_SUITE_P(Scales, LibraryDragAtScale,
                         testing::Values(std::make_pair(SIZE{800, 600}, SIZE{400, 300}),
                                         std::make_pair(SIZE{400, 300}, SIZE{400, 300}),
                                         std::make_pair(SIZE{300, 220}, SIZE{600, 440})));

TEST_F(LibraryDrag, ThePictureStaysUnderThePointer)
{
    ASSERT_TRUE(openWithStored(600, 400));
    const RECT item = storedRect(host, 0);
    const POINT pressed = {item.left + 20, item.top + 30};
    ASSERT_TRUE(placePointer(&host, pressed));
    ASSERT_TRUE(pressButton(&host));
    ASSERT_TRUE(waitUntil("the dragged picture", [&] { return dragPicture(host) != nullptr; }));
    RECT first, moved;
    GetWindowRect(dragPicture(host), &first);
    EXPECT_TRUE(PtInRect(&first, pressed));
    EXPECT_GE(first.left, item.left);
    EXPECT_LE(first.right, item.right);
    EXPECT_EQ((first.bottom - first.top) * 4, (first.right - first.left) * 3) << "4 : 3";
    for (POINT to : {onCanvas(host, 300, 200), onCanvas(host, 50, 60), POINT{1400, 900}}) {
        ASSERT_TRUE(placePointer(&host, to));
        GetWindowRect(dragPicture(host), &moved);
        EXPECT_EQ(first.left + to.x - pressed.x, moved.left);
        EXPECT_EQ(first.top + to.y - pressed.y, moved.top);
    }
    ASSERT_TRUE(releaseButton(&host));
    EXPECT_FALSE(dragPicture(host));
    EXPECT_FALSE(floats());
}

TEST_F(LibraryDrag, DroppedOutsideTheEditingWindowDoesNothing)
{
    ASSERT_TRUE(openWithStored(600, 400));
    const reference::StoredPicture shown = shownBy(host.canvas);
    RECT window, palette;
    GetWindowRect(host.dialog, &window);
    GetWindowRect(host.palette, &palette);
    const RECT item = storedRect(host, 0);
    const POINT outside[] = {
        {700, 800},                                                // the desktop
        {window.left + 100, window.top + 1},                       // the editing window's frame
        {(palette.left + palette.right) / 2, palette.bottom - 3},  // the palette
        {(item.left + item.right) / 2, item.bottom + 40},          // the list itself
    };
    for (POINT at : outside) {
        ASSERT_TRUE(dragStored(&host, 0, at));
        expectNothingHappened(shown);
    }
}

TEST_F(LibraryDrag, DroppedOnAWindowOverTheImageDoesNothing)
{
    ASSERT_TRUE(openWithStored(600, 400));
    const reference::StoredPicture shown = shownBy(host.canvas);
    const POINT at = onCanvas(host, 300, 200);
    HWND cover = nullptr;
    runOnHost(&host, [&] {
        cover = CreateWindowExA(WS_EX_TOPMOST | WS_EX_NOACTIVATE, "RetouchTestHost", "", WS_POPUP | WS_VISIBLE,
                                at.x - 40, at.y - 40, 80, 80, nullptr, nullptr, nullptr, nullptr);
    });
    ASSERT_TRUE(settle(&host));
    ASSERT_TRUE(grabStored(&host, 0));
    ASSERT_TRUE(placePointer(&host, at));
    ASSERT_TRUE(releaseButton(&host));
    runOnHost(&host, [&] { DestroyWindow(cover); });
    expectNothingHappened(shown);
    ASSERT_TRUE(dragStored(&host, 0, at));
    EXPECT_TRUE(floats()) << "the same place without the window over it";
}

TEST_F(LibraryDrag, DroppedOnTheLibrarysOwnWindowOverTheImageDoesNothing)
{
    putFile(1, referenceTiff(selection));
    ASSERT_TRUE(openOver(600, 400));
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(toggleLibraryWindow(&host));  // opens over the image
    const RECT item = storedRect(host, 0);
    ASSERT_TRUE(dragStored(&host, 0, {(item.left + item.right) / 2, item.bottom + 60}));
    EXPECT_FALSE(floats());
    ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, 120, 120)));
    EXPECT_TRUE(floats());
    expectUntouched();
}

TEST_F(LibraryDrag, CancelledDoesNothing)
{
    ASSERT_TRUE(openWithStored(600, 400));
    const reference::StoredPicture shown = shownBy(host.canvas);
    const auto gone = [&] { return !dragPicture(host); };
    ASSERT_TRUE(grabStored(&host, 0));
    ASSERT_TRUE(placePointer(&host, onCanvas(host, 300, 200)));
    pressKey(VK_ESCAPE);
    ASSERT_TRUE(waitUntil("the drag to be given up", gone));
    ASSERT_TRUE(releaseButton(&host));
    expectNothingHappened(shown);
    EXPECT_TRUE(libraryWindow(host)) << "the key ends the drag only";

    ASSERT_TRUE(grabStored(&host, 0));
    ASSERT_TRUE(placePointer(&host, onCanvas(host, 300, 200)));
    runOnHost(&host, [] { ReleaseCapture(); });  // as when another program comes to the front
    ASSERT_TRUE(waitUntil("the drag to be given up", gone));
    ASSERT_TRUE(releaseButton(&host));
    expectNothingHappened(shown);

    ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, 300, 200)));
    EXPECT_TRUE(floats()) << "a later drag works";
}

TEST_F(LibraryDrag, APressBesideThePictureSelectsWithoutADrag)
{
    ASSERT_TRUE(openWithStored(600, 400));
    const RECT item = storedRect(host, 0);
    ASSERT_TRUE(placePointer(&host, {item.left + 2, item.top + 2}));
    ASSERT_TRUE(pressButton(&host));
    EXPECT_FALSE(dragPicture(host));
    EXPECT_EQ(0, currentStored(host));
    ASSERT_TRUE(releaseButton(&host));
    ASSERT_TRUE(placePointer(&host, {item.left + 30, item.bottom + 30}));  // below the last one
    ASSERT_TRUE(pressButton(&host));
    EXPECT_FALSE(dragPicture(host));
    ASSERT_TRUE(releaseButton(&host));
}

// To the system the second press is a double click, on an item that has come there by scrolling.
TEST_F(LibraryDrag, APressSoonAfterAnotherDragsWhatLiesThereNow)
{
    for (int number = 2; number <= 12; ++number)
        putFile(number, referenceTiff(selection));
    ASSERT_TRUE(openWithStored(600, 400));
    SendMessageA(libraryList(host), LB_SETTOPINDEX, 0, 0);
    ASSERT_TRUE(clickStored(&host, 0));
    SendMessageA(libraryList(host), LB_SETTOPINDEX, 5, 0);
    ASSERT_TRUE(settle(&host));
    ASSERT_TRUE(pressButton(&host));  // on a slow machine a plain one
    EXPECT_TRUE(dragPicture(host));
    EXPECT_EQ(5, currentStored(host));
    ASSERT_TRUE(releaseButton(&host));
}

TEST_F(LibraryDrag, NearABorderItIsPushedInsideByOnePixel)
{
    struct {
        POINT drop;
        int dx, dy;  // then moved to where its frame can be reached
    } const cases[] = {{{2, 3}, 150, 120}, {{597, 396}, -150, -120}, {{0, 399}, 160, -110}};
    for (const auto& one : cases) {
        ASSERT_TRUE(openWithStored(600, 400));
        ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, one.drop.x, one.drop.y)));
        RECT rect = placedRect(one.drop, selection, image());
        EXPECT_GE(rect.left, 1);
        EXPECT_GE(rect.top, 1);
        EXPECT_LE(rect.right, 599);
        EXPECT_LE(rect.bottom, 399);
        expectShownAt(rect);
        ASSERT_TRUE(moveFloating({(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2}, one.dx, one.dy));
        OffsetRect(&rect, one.dx, one.dy);
        applyAndCheck(rect);
        closeAndCheck(before);
    }
}

// Clamped in the order left, right: it begins before the image, and what lies outside is skipped.
TEST_F(LibraryDrag, OneThatIsLargerThanTheImageBeginsBeforeIt)
{
    selection = roundSelection(12, 340, 230);
    ASSERT_TRUE(openWithStored(300, 200));
    ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, 150, 100)));
    EXPECT_TRUE(floats());
    expectUntouched();
    const RECT rect = placedRect({150, 100}, selection, image());
    EXPECT_EQ(300 - 340 / 2 - 1 - 340 / 2, rect.left);
    EXPECT_EQ(200 - 230 / 2 - 1 - 230 / 2, rect.top);
    expectShownAt(rect);
    expectUntouched();
    closeAndCheck(before);
}

TEST_F(LibraryDrag, ADropReplacesWhatFloats)
{
    ASSERT_TRUE(openWithStored(600, 400));
    ASSERT_TRUE(draw({{50, 50}, {120, 50}, {120, 120}, {50, 120}}));
    ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, 400, 250)));
    applyAndCheck(placedRect({400, 250}, selection, image()));
    ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, 200, 150)));
    applyAndCheck(placedRect({200, 150}, selection, image()));
    closeAndCheck(before);
}

TEST_F(LibraryDrag, ADropEndsALineOfText)
{
    ASSERT_TRUE(openWithStored(600, 400));
    ASSERT_TRUE(clickControl(&host, ID_TEXT));
    ASSERT_TRUE(drawStroke(&host, {{60, 60}}));
    ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, 400, 250)));
    EXPECT_TRUE(floats());
    applyAndCheck(placedRect({400, 250}, selection, image()));
    EXPECT_FALSE(isChecked(host, ID_TEXT));
}

// Meant: what floats is dropped before the file is looked at.
TEST_F(LibraryDrag, WhatCannotBePlacedLeavesNothingFloating)
{
    ASSERT_TRUE(openWithStored(600, 400));
    const reference::StoredPicture shown = shownBy(host.canvas);
    ReferenceSelection allOutside = selection;
    for (reference::Pixel& pixel : allOutside.mask.pixels)
        pixel = {255, 255, 255};
    ReferenceSelection onePixel = allOutside;
    onePixel.mask.at(40, 30) = {0, 0, 0};
    const FileBytes files[] = {referenceTiff(allOutside), referenceTiff(onePixel), FileBytes(100, 'I'), FileBytes()};
    for (const FileBytes& file : files) {
        putFile(1, file);
        ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, 300, 200)));
        expectNothingHappened(shown);
    }
    ASSERT_TRUE(DeleteFileA((libraryDirectory(library) + storedName(1)).c_str()));
    ASSERT_TRUE(draw({{50, 50}, {120, 50}, {120, 120}, {50, 120}}));
    ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, 300, 200)));
    ASSERT_TRUE(placePointer(&host, AWAY));
    EXPECT_TRUE(shown.bytes == shownBy(host.canvas).bytes) << "no outline, no frame";
    expectUntouched();
}

// ---- round trips

TEST_F(LibraryDrag, SavedPlacedAndAppliedAtTheSameSpotChangesNothing)
{
    ASSERT_TRUE(openOver(600, 400));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(moveLibraryAside(&host));
    const Corners star = {{200, 100}, {320, 260}, {180, 170}, {330, 150}, {210, 280}};  // crosses itself
    const DrawnSelection drawn = drawnSelection(image(), star);
    ASSERT_TRUE(draw(star));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    const POINT middle = {drawn.rect.left + drawn.selection.mask.width / 2,
                          drawn.rect.top + drawn.selection.mask.height / 2};
    ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, middle.x, middle.y)));
    const reference::StoredPicture floating = shownBy(host.canvas);
    ASSERT_TRUE(clickApply(drawn.rect));
    EXPECT_TRUE(floating.bytes == shownBy(host.canvas).bytes);
    expectUntouched();

    // Stored again, the file is the same.
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    EXPECT_TRUE(stored(1) == stored(2));
    saveAndCheck();
    expectUntouched();

    // On another photo it brings the pixels of the first.
    selection = drawn.selection;
    ASSERT_TRUE(openOver(500, 380));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(moveLibraryAside(&host));
    ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, 260, 200)));
    applyAndCheck(placedRect({260, 200}, selection, image()));
    saveAndCheck();
}

TEST_F(LibraryDrag, AFileOfTheOtherByteOrderIsPlacedTheSame)
{
    ASSERT_TRUE(openWithStored(600, 400));
    putFile(1, referenceTiff(selection, true));
    ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, 300, 200)));
    applyAndCheck(placedRect({300, 200}, selection, image()));
}
