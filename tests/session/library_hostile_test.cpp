// Hostile files in the library's directory: opened in the list, dragged and dropped on the image with the real
// pointer. Whatever they say, the session goes on and the image stays as it is until Apply.
#include "tests/session/hostile_files.h"
#include "tests/session/library_fixture.h"

struct HostileLibrary : LibrarySession {
    bool openLibraryAside()
    {
        return openOver(400, 300) && toggleLibraryWindow(&host) && moveLibraryAside(&host) &&
               clickControl(&host, ID_BRUSH);
    }

    // Shows every item once, a page at a time.
    void scrollThrough()
    {
        const HWND list = libraryList(host);
        for (int i = 0; i < storedCount(host); i += 3) {
            SendMessageA(list, LB_SETTOPINDEX, (WPARAM)i, 0);
            ASSERT_TRUE(settle(&host));
        }
    }

    // True when something floats afterwards. What floats is dropped again.
    bool dropFloats(int index, POINT client)
    {
        EXPECT_TRUE(dragStored(&host, index, onCanvas(host, client.x, client.y)));
        expectUntouched();
        const bool floats = isChecked(host, ID_SELECTION);
        return floats && clickControl(&host, ID_BRUSH);
    }
};

constexpr int HOSTILE_COUNT = 300;

TEST_F(HostileLibrary, DamagedFilesInTheListAreSkippedOrShown)
{
    HostileFiles files(1);
    for (int i = 1; i <= HOSTILE_COUNT; ++i)
        putFile(i, files.next());
    ASSERT_TRUE(openLibraryAside());
    const int listed = storedCount(host);
    EXPECT_GT(listed, HOSTILE_COUNT / 20) << "some have sound directories";
    EXPECT_LT(listed, HOSTILE_COUNT * 19 / 20);
    scrollThrough();
    std::mt19937 random(2);
    for (int i = 0; i < listed; ++i)
        dropFloats(i, {(LONG)(random() % 400), (LONG)(random() % 300)});
    closeAndCheck(before);
}

// Each takes a sound file's place behind the list's back.
TEST_F(HostileLibrary, DamagedFilesAreDroppedWithoutHarm)
{
    HostileFiles files(3);
    putFile(1, files.sound[0]);
    ASSERT_TRUE(openLibraryAside());
    int floated = 0;
    for (int i = 0; i < HOSTILE_COUNT && !HasFailure(); ++i) {
        putFile(1, files.next());
        floated += dropFloats(0, {(LONG)(files.random() % 400), (LONG)(files.random() % 300)});
    }
    EXPECT_GT(floated, 0);
    EXPECT_LT(floated, HOSTILE_COUNT);
    putFile(1, files.sound[0]);
    EXPECT_TRUE(dropFloats(0, {200, 150})) << "a sound file is still placed";
    closeAndCheck(before);
}

TEST_F(HostileLibrary, OddMasksFloatOrAreRefusedAndApplyToTheirPixelsOnly)
{
    const std::vector<ReferenceSelection> selections = selectionsWithOddMasks(120, 90);
    putFile(1, referenceTiff(selections[0]));
    ASSERT_TRUE(openLibraryAside());
    int floated = 0;
    for (const ReferenceSelection& selection : selections) {
        putFile(1, referenceTiff(selection));
        ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, 200, 150)));
        expectUntouched();
        if (!isChecked(host, ID_SELECTION)) continue;
        ++floated;
        const RECT rect = placedRect({200, 150}, selection, image());
        const reference::Picture expected = withSelectionApplied(image(), selection, rect);
        ASSERT_TRUE(clickApply(rect));
        expectImage(expected);
        before = snapshot(photo);
        ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    }
    EXPECT_GE(floated, 3);
    saveAndCheck();
}
