// The library's window: saving, deleting, its list and thumbnails, and what a later session finds.
#include "tests/session/library_fixture.h"

struct LibraryWindow : LibrarySession {
    void expectFiles(const std::vector<std::string>& names) { EXPECT_EQ(names, filesOfLibrary(library)); }
    void expectShown(int index, const ReferenceSelection& selection)
    {
        const reference::Picture shown = shownThumbnail(host, index),
                                 expected = expectedThumbnail(host, index, selection);
        EXPECT_EQ(expected.width, shown.width);
        EXPECT_TRUE(shown.pixels == expected.pixels) << "item " << index;
    }
};

TEST_F(LibraryWindow, OpensAndClosesByThePaletteAndByItsOwnButton)
{
    ASSERT_TRUE(openOver(600, 400));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    EXPECT_TRUE(isChecked(host, ID_LIBRARY));
    EXPECT_EQ(libraryList(host), focusOf(host));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    EXPECT_FALSE(isChecked(host, ID_LIBRARY));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_CLOSE));
    EXPECT_FALSE(libraryWindow(host));
    EXPECT_FALSE(isChecked(host, ID_LIBRARY));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    closeAndCheck(before);
    EXPECT_FALSE(libraryWindow(host));
}

TEST_F(LibraryWindow, SavesWhatTheOutlineEncloses)
{
    ASSERT_TRUE(openOver(600, 400));
    const ReferenceSelection selection = drawnSelection(image(), pentagon).selection;
    ASSERT_TRUE(draw(pentagon));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    EXPECT_EQ(0, storedCount(host));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    EXPECT_EQ("001\r\nseld_001.tif\r\n", listText());
    EXPECT_TRUE(stored(1) == referenceTiff(selection));
    expectFiles({"seld_001.tif", "seldib.lst"});
    ASSERT_EQ(1, storedCount(host));
    expectShown(0, selection);
    expectUntouched();
}

TEST_F(LibraryWindow, SavesNothingWithoutASelection)
{
    ASSERT_TRUE(openOver(300, 200));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_DELETE));
    EXPECT_FALSE(deleteQuestion(host));
    EXPECT_EQ(0, storedCount(host));
    expectFiles({});
}

// Meant: the counter keeps the first three digits only, so that file 101 follows file 1000.
TEST_F(LibraryWindow, NumbersGoOnFrom1000To101)
{
    const ReferenceSelection older = roundSelection(3, 30, 20);
    putFile(101, referenceTiff(older));
    ASSERT_TRUE(writeFileBytes(listFile(), {'9', '9', '8', '\r', '\n'}));
    ASSERT_TRUE(openOver(600, 400));
    const FileBytes drawn = referenceTiff(drawnSelection(image(), pentagon).selection);
    ASSERT_TRUE(draw(pentagon));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    for (const char* counter : {"999", "100", "101", "102"}) {
        ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
        EXPECT_EQ(counter, listText().substr(0, 3));
    }
    EXPECT_EQ("102\r\nseld_999.tif\r\nseld_1000.tif\r\nseld_101.tif\r\nseld_102.tif\r\n", listText());
    expectFiles({"seld_1000.tif", "seld_101.tif", "seld_102.tif", "seld_999.tif", "seldib.lst"});
    for (int number : {101, 102, 999, 1000})
        EXPECT_TRUE(stored(number) == drawn) << number;
}

TEST_F(LibraryWindow, DeletesOnlyAfterAYes)
{
    for (int number : {1, 2, 3})
        putFile(number, referenceTiff(roundSelection((unsigned)number, 40, 30)));
    ASSERT_TRUE(writeFileBytes(listFile(), {'0', '0', '3', '\r', '\n'}));
    ASSERT_TRUE(openOver(600, 400));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_EQ(3, storedCount(host));

    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_DELETE));
    EXPECT_FALSE(deleteQuestion(host)) << "nothing is current";

    ASSERT_TRUE(clickStored(&host, 1));
    EXPECT_EQ(1, currentStored(host));
    ASSERT_TRUE(askToDelete(&host));
    EXPECT_TRUE(questionText(host) == L"Are you sure to delete the file ?");
    EXPECT_EQ(GetDlgItem(deleteQuestion(host), IDNO), focusOf(host));
    pressKey(VK_RETURN);
    ASSERT_TRUE(waitUntil("the question to go", [&] { return !deleteQuestion(host); }));
    EXPECT_EQ(3, storedCount(host)) << "No is the default";

    ASSERT_TRUE(askToDelete(&host));
    ASSERT_TRUE(answer(&host, IDNO));
    EXPECT_EQ(3, storedCount(host));
    expectFiles({"seld_001.tif", "seld_002.tif", "seld_003.tif", "seldib.lst"});

    ASSERT_TRUE(askToDelete(&host));
    ASSERT_TRUE(answer(&host, IDYES));
    EXPECT_EQ(2, storedCount(host));
    EXPECT_EQ("003\r\n", listText()) << "the list keeps counter and lines";
    const std::vector<std::string> left = filesOfLibrary(library);
    EXPECT_EQ(3u, left.size());
    const unsigned gone = stored(1).empty() ? 1 : stored(2).empty() ? 2 : 3;
    int item = 0;
    for (unsigned number : {1u, 2u, 3u}) {
        if (number != gone) expectShown(item++, roundSelection(number, 40, 30));
    }
}

TEST_F(LibraryWindow, ADeletedNumberIsNotUsedAgain)
{
    ASSERT_TRUE(openOver(600, 400));
    ASSERT_TRUE(draw(pentagon));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    ASSERT_TRUE(clickStored(&host, 1));
    ASSERT_TRUE(askToDelete(&host));
    ASSERT_TRUE(answer(&host, IDYES));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    EXPECT_EQ("003\r\nseld_001.tif\r\nseld_002.tif\r\nseld_003.tif\r\n", listText());
    expectFiles({"seld_001.tif", "seld_003.tif", "seldib.lst"});
}

TEST_F(LibraryWindow, ALaterSessionFindsWhatAnEarlierOneStored)
{
    ASSERT_TRUE(openOver(600, 400));
    std::vector<ReferenceSelection> selections;
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(moveLibraryAside(&host));
    for (const Corners& corners : {pentagon, triangle}) {
        selections.push_back(drawnSelection(image(), corners).selection);
        ASSERT_TRUE(draw(corners));
        ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
        ASSERT_TRUE(clickControl(&host, ID_BRUSH));  // drops the selection
    }
    closeAndCheck(before);

    ASSERT_TRUE(openOver(400, 300));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(moveLibraryAside(&host));
    ASSERT_EQ(2, storedCount(host));
    for (int i = 0; i < 2; ++i)
        expectShown(i, selections[(size_t)i]);
    ASSERT_TRUE(draw({{10, 10}, {60, 10}, {60, 90}, {10, 90}}));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    EXPECT_EQ("003\r\nseld_001.tif\r\nseld_002.tif\r\nseld_003.tif\r\n", listText());
}

TEST_F(LibraryWindow, ThumbnailsKeepTheirShapeAtEveryWidth)
{
    const ReferenceSelection wide = roundSelection(5, 100, 10), tall = roundSelection(6, 10, 100);
    putFile(1, referenceTiff(wide));
    putFile(2, referenceTiff(tall));
    ASSERT_TRUE(openOver(600, 400));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(moveLibraryAside(&host));
    const HWND list = libraryList(host);
    for (int width : {60, 61, 77, 92, 100, 101, 118, 125}) {
        runOnHost(&host, [&] { SetWindowPos(list, nullptr, 0, 0, width, 300, SWP_NOMOVE | SWP_NOZORDER); });
        ASSERT_TRUE(settle(&host));
        expectShown(0, wide);
        expectShown(1, tall);
    }
}

// Items of 100 x 75 leave 88 x 63 beside the margin: the picture is 84 x 63, in the middle.
TEST_F(LibraryWindow, APictureIsAsLargeAsItsItemAllows)
{
    const ReferenceSelection selection = roundSelection(5, 100, 60);
    putFile(1, referenceTiff(selection));
    ASSERT_TRUE(openOver(600, 400));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    const HWND list = libraryList(host);
    RECT window, client;
    GetWindowRect(list, &window);
    GetClientRect(list, &client);
    const int borders = window.right - window.left - client.right;
    runOnHost(&host, [&] {
        SendMessageA(list, LB_SETITEMHEIGHT, 0, 75);
        SetWindowPos(list, nullptr, 0, 0, 100 + borders, 300, SWP_NOMOVE | SWP_NOZORDER);
    });
    ASSERT_TRUE(settle(&host));
    const reference::Picture shown = shownThumbnail(host, 0);
    EXPECT_EQ(84, shown.width);
    EXPECT_EQ(63, shown.height);
    expectShown(0, selection);
}

TEST_F(LibraryWindow, ItsFrameChangesTheHeightOnlyAndTheListFollows)
{
    ASSERT_TRUE(openOver(600, 400));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    RECT windowBefore, windowAfter, listBefore, listAfter, client;
    GetWindowRect(libraryWindow(host), &windowBefore);
    GetWindowRect(libraryList(host), &listBefore);
    const POINT corner = {windowBefore.right - 2, windowBefore.bottom - 2};
    ASSERT_TRUE(dragLibraryFrame(&host, corner, 40, 70));
    GetWindowRect(libraryWindow(host), &windowAfter);
    GetWindowRect(libraryList(host), &listAfter);
    EXPECT_EQ(windowBefore.right, windowAfter.right);
    EXPECT_EQ(windowBefore.bottom + 70, windowAfter.bottom);
    EXPECT_EQ(listBefore.left, listAfter.left);
    EXPECT_EQ(listBefore.top, listAfter.top);
    GetClientRect(libraryWindow(host), &client);
    MapWindowPoints(libraryWindow(host), nullptr, (POINT*)&client, 2);
    EXPECT_EQ(client.right, listAfter.right);
    EXPECT_EQ(client.bottom, listAfter.bottom);
}

TEST_F(LibraryWindow, AScrollBarThatAppearsMovesEveryPicture)
{
    ASSERT_TRUE(openOver(600, 400));
    const ReferenceSelection selection = drawnSelection(image(), triangle).selection;
    ASSERT_TRUE(draw(triangle));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(moveLibraryAside(&host));
    const HWND list = libraryList(host);
    const auto hasScrollBar = [&] { return (GetWindowLongA(list, GWL_STYLE) & WS_VSCROLL) != 0; };
    RECT client;
    GetClientRect(list, &client);
    const LONG fullWidth = client.right;
    EXPECT_FALSE(hasScrollBar());
    while (!hasScrollBar() && storedCount(host) < 20)
        ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    GetClientRect(list, &client);
    EXPECT_LT(client.right, fullWidth);
    for (int i = 0; i + 1 < storedCount(host); ++i)
        expectShown(i, selection);
}
