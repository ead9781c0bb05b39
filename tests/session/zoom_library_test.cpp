// Stored selections dropped with the real pointer on a canvas that is zoomed and shows a part of the image.
#include "tests/session/library_fixture.h"
#include "tests/session/zoom_fixture.h"

struct ZoomLibrary : ZoomSession, testing::WithParamInterface<int> {
    const ReferenceSelection selection = roundSelection(17, 34, 23);

    void TearDown() override
    {
        ZoomSession::TearDown();
        restPointer();
        removeLibraryDirectory(library);
        RemoveDirectoryA(library.directory.c_str());
    }

    reference::Picture image() const { return LibrarySession::imageOfBlock(snapshot(photo)); }

    void openWithStored()
    {
        makeLibraryDirectory(library);
        ASSERT_TRUE(writeFileBytes(libraryDirectory(library) + storedName(1), referenceTiff(selection)));
        openOwnColours(1000, 750, 400, 300);
        ASSERT_TRUE(toggleLibraryWindow(&host) && moveLibraryAside(&host) && clickControl(&host, ID_BRUSH));
    }

    // Zoomed with the wheel, then dragged away with the middle button.
    void lookAt(int percentage)
    {
        ASSERT_TRUE(movePointerOnCanvas(&host, 200, 150));
        while (percent() != percentage)
            ASSERT_TRUE(turnWheel(120));
        ASSERT_TRUE(pressMiddle());
        ASSERT_TRUE(movePointerOnCanvas(&host, 121, 93));
        ASSERT_TRUE(releaseMiddle());
        ASSERT_TRUE(movePointer(&host, {1590, 600}));
        ASSERT_TRUE(settle(&host));
        ASSERT_GT(shownAt(0, 0).x, 100);
        ASSERT_GT(shownAt(0, 0).y, 100);
    }

    // Where it is dropped the canvas shows the pixel of its middle.
    void expectMiddleShownAt(POINT client)
    {
        const reference::Pixel middle = selection.image.at(selection.mask.width / 2, selection.mask.height / 2);
        EXPECT_TRUE(waitUntil("the selection's middle to show", [&] {
            const POINT at = onCanvas(host, client.x, client.y);
            const reference::StoredPicture shown = screenPart({at.x, at.y, at.x + 1, at.y + 1});
            return reference::fromStoredRows(shown.bytes.data(), 1, 1).at(0, 0) == middle;
        }));
    }
};

TEST_P(ZoomLibrary, ADropLandsOnThePixelWhereItIsLetGo)
{
    openWithStored();
    lookAt(GetParam());
    const POINT drops[] = {{170, 110}, {271, 177}, {3, 4}};  // the last one hangs out of the view
    ShownPixel under[3];
    for (int i = 0; i < 3; ++i)
        under[i] = shownAt(drops[i].x, drops[i].y);
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(testing::Message() << "drop " << i);
        const reference::Picture before = image();
        ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, drops[i].x, drops[i].y)));
        EXPECT_TRUE(isChecked(host, ID_SELECTION));
        EXPECT_TRUE(before.pixels == image().pixels) << "untouched until it is applied";
        expectRepaintChangesNothing("dropped");
        expectMiddleShownAt(drops[i]);
        ASSERT_TRUE(drawStroke(&host, {{380, 20}}));  // beside it: the canvas has the keys
        ASSERT_TRUE(tapKey(VK_RETURN));
        const RECT rect = placedRect({under[i].x, under[i].y}, selection, before);
        EXPECT_TRUE(withSelectionApplied(before, selection, rect).pixels == image().pixels);
    }
    closeSession();
}

INSTANTIATE_TEST_SUITE_P(Scales, ZoomLibrary, testing::Values(100, 300));
