// Libraries that are used by two programs at once, lie under a long path, or hold hundreds of selections.
#include <algorithm>

#include "tests/session/library_fixture.h"

constexpr int SAVES = 25;  // of each program
constexpr DWORD PROCESS_LIMIT_MS = 60000;

// How the two programs of a test find each other.
constexpr char DIRECTORY_VARIABLE[] = "RETOUCH_NEIGHBOUR_DIRECTORY";
constexpr char READY_EVENT[] = "RetouchNeighbourReady", START_EVENT[] = "RetouchNeighbourStart";

static void pressSave(const Host& host)
{
    SendMessageA(libraryWindow(host), WM_COMMAND, ID_LIBRARY_SAVE, 0);
}

// ---- the second program: this one, run once more. Two programs cannot share the pointer, so this one is worked
// by messages, with the pointer at rest over its canvas.

constexpr POINT OVER_NEIGHBOUR = {200, 620};

static void drawByMessages(Host* host, const Corners& corners)
{
    SendMessageA(host->palette, WM_COMMAND, ID_SELECTION, 0);
    PostMessageA(host->canvas, WM_MOUSEMOVE, 0, MAKELPARAM(corners[0].x, corners[0].y));
    settle(host);
    runOnHost(host, [&] {
        for (size_t i = 0; i < corners.size(); ++i)
            SendMessageA(host->canvas, i ? WM_MOUSEMOVE : WM_LBUTTONDOWN, MK_LBUTTON,
                         MAKELPARAM(corners[i].x, corners[i].y));
        SendMessageA(host->canvas, WM_LBUTTONUP, 0, MAKELPARAM(corners.back().x, corners.back().y));
    });
}

TEST(DISABLED_LibraryNeighbour, SavesWhenTold)
{
    char directory[MAX_PATH] = "";
    ASSERT_NE(0u, GetEnvironmentVariableA(DIRECTORY_VARIABLE, directory, sizeof directory));
    Library library = {};
    Host host = {};
    HostImage photo = makePhoto(300, 200, 7);
    RECT rect = dialogRectForClient(60, 500, 300, 200);
    POINT palettePos = {900, 500};
    ASSERT_TRUE(loadLibraryIn(&library, directory));
    ASSERT_TRUE(startHost(&host, &library));
    ASSERT_TRUE(openSession(&host, {photo.block, &rect, &palettePos, host.parent, 0}));
    drawByMessages(&host, triangle);
    SendDlgItemMessageA(host.palette, ID_LIBRARY, BM_SETCHECK, BST_CHECKED, 0);
    SendMessageA(host.palette, WM_COMMAND, ID_LIBRARY, 0);
    ASSERT_TRUE(libraryWindow(host));
    const HANDLE ready = OpenEventA(EVENT_MODIFY_STATE, FALSE, READY_EVENT),
                 start = OpenEventA(SYNCHRONIZE, FALSE, START_EVENT);
    SetEvent(ready);
    ASSERT_EQ(WAIT_OBJECT_0, WaitForSingleObject(start, PROCESS_LIMIT_MS));
    for (int i = 0; i < SAVES; ++i)
        pressSave(host);
    EXPECT_EQ(SAVES, storedCount(host)) << "its list shows what it saved itself";
    stopHost(&host);
    FreeLibrary(library.module);
    freeImage(&photo);
}

struct SharedLibrary : LibrarySession {
    HANDLE ready = CreateEventA(nullptr, TRUE, FALSE, READY_EVENT);
    HANDLE start = CreateEventA(nullptr, TRUE, FALSE, START_EVENT);
    PROCESS_INFORMATION neighbour = {};

    void TearDown() override
    {
        if (neighbour.hProcess) {
            if (WaitForSingleObject(neighbour.hProcess, 0) != WAIT_OBJECT_0) TerminateProcess(neighbour.hProcess, 9);
            CloseHandle(neighbour.hProcess);
            CloseHandle(neighbour.hThread);
        }
        CloseHandle(ready);
        CloseHandle(start);
        LibrarySession::TearDown();
    }

    // Runs the second program and waits until it is ready to save.
    bool startNeighbour()
    {
        char program[MAX_PATH];
        GetModuleFileNameA(nullptr, program, sizeof program);
        std::string command =
            std::string("\"") + program +
            "\" --gtest_brief=1 --gtest_also_run_disabled_tests --gtest_filter=DISABLED_LibraryNeighbour.*";
        SetEnvironmentVariableA(DIRECTORY_VARIABLE, library.directory.c_str());
        STARTUPINFOA startup = {};
        startup.cb = sizeof startup;
        if (!CreateProcessA(nullptr, &command[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &neighbour))
            return false;
        const HANDLE either[] = {ready, neighbour.hProcess};
        return WaitForMultipleObjects(2, either, FALSE, PROCESS_LIMIT_MS) == WAIT_OBJECT_0;
    }
};

TEST_F(SharedLibrary, TwoProgramsSavingAtOnceTakeDifferentNumbers)
{
    ASSERT_TRUE(openOver(600, 400));
    const FileBytes ours = referenceTiff(drawnSelection(image(), pentagon).selection);
    HostImage other = makePhoto(300, 200, 7);
    const FileBytes theirs = referenceTiff(drawnSelection(imageOfBlock(snapshot(other)), triangle).selection);
    freeImage(&other);
    ASSERT_TRUE(draw(pentagon));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(placePointer(&host, OVER_NEIGHBOUR));
    ASSERT_TRUE(startNeighbour());
    SetEvent(start);
    for (int i = 0; i < SAVES; ++i)
        pressSave(host);
    ASSERT_EQ(WAIT_OBJECT_0, WaitForSingleObject(neighbour.hProcess, PROCESS_LIMIT_MS));
    DWORD result = 1;
    GetExitCodeProcess(neighbour.hProcess, &result);
    EXPECT_EQ(0u, result) << "the second program failed";

    int oursSeen = 0, theirsSeen = 0;
    std::string lines = "050\r\n";
    for (int number = 1; number <= 2 * SAVES; ++number) {
        const FileBytes bytes = stored(number);
        oursSeen += bytes == ours;
        theirsSeen += bytes == theirs;
        lines += storedName(number) + "\r\n";
    }
    EXPECT_EQ(SAVES, oursSeen);
    EXPECT_EQ(SAVES, theirsSeen);
    EXPECT_EQ(lines, listText());
    EXPECT_EQ(2u * SAVES + 1, filesOfLibrary(library).size());
    EXPECT_EQ(SAVES, storedCount(host));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_CLOSE));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    EXPECT_EQ(2 * SAVES, storedCount(host)) << "opened again it shows the other's too";
}

// ---- a long path

constexpr size_t LONGEST_PATH = MAX_PATH - 1;

struct LibraryUnderALongPath : LibrarySession {
    std::vector<std::string> parents;  // made for the test, outermost first

    // A directory in which the file of selection 1 has the longest path that the system takes.
    std::string longDirectory()
    {
        const size_t wanted = LONGEST_PATH - std::string("SELDIB\\seld_001.tif").size();
        std::string directory = freshDirectory();
        while (directory.size() < wanted) {
            CreateDirectoryA(directory.c_str(), nullptr);
            parents.push_back(directory);
            const size_t left = wanted - directory.size() - 1, part = left > 100 ? 60 : left;
            directory += std::string(part, 'n') + "\\";
        }
        return directory;
    }

    void TearDown() override
    {
        LibrarySession::TearDown();
        for (; !parents.empty(); parents.pop_back())
            RemoveDirectoryA(parents.back().c_str());
    }
};

TEST_F(LibraryUnderALongPath, SavesShowsPlacesAndDeletes)
{
    stopHost(&host);
    unloadLibrary(&library);
    ASSERT_TRUE(loadLibraryIn(&library, longDirectory()));
    ASSERT_TRUE(startHost(&host, &library));
    ASSERT_EQ(LONGEST_PATH, (libraryDirectory(library) + storedName(1)).size());
    ASSERT_TRUE(openOver(600, 400));
    const DrawnSelection drawn = drawnSelection(image(), pentagon);
    ASSERT_TRUE(draw(pentagon));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(moveLibraryAside(&host));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    EXPECT_TRUE(stored(1) == referenceTiff(drawn.selection));
    EXPECT_EQ("001\r\nseld_001.tif\r\n", listText());
    ASSERT_EQ(1, storedCount(host));
    ASSERT_TRUE(dragStored(&host, 0, onCanvas(host, 400, 250)));
    const RECT rect = placedRect({400, 250}, drawn.selection, image());
    const reference::Picture expected = withSelectionApplied(image(), drawn.selection, rect);
    ASSERT_TRUE(clickApply(rect));
    expectImage(expected);
    ASSERT_TRUE(clickStored(&host, 0));
    ASSERT_TRUE(askToDelete(&host));
    ASSERT_TRUE(answer(&host, IDYES));
    EXPECT_EQ(std::vector<std::string>{"seldib.lst"}, filesOfLibrary(library));
}

// ---- many

constexpr int MANY = 400;

struct LibraryOfHundreds : LibrarySession {};

TEST_F(LibraryOfHundreds, AllAreListedAndTheLastCanBePlaced)
{
    const ReferenceSelection selection = roundSelection(9, 200, 150);
    const FileBytes bytes = referenceTiff(selection);
    for (int number = 1; number <= MANY; ++number)
        putFile(number, bytes);
    ASSERT_TRUE(openOver(600, 400));
    const DWORD began = GetTickCount();
    ASSERT_TRUE(toggleLibraryWindow(&host));
    printf("%d stored selections opened in %lu ms\n", MANY, GetTickCount() - began);
    ASSERT_EQ(MANY, storedCount(host));
    ASSERT_TRUE(moveLibraryAside(&host));
    for (int index : {0, MANY / 2, MANY - 1}) {
        storedRect(host, index);  // scrolls to it
        ASSERT_TRUE(settle(&host));
        EXPECT_TRUE(shownThumbnail(host, index).pixels == expectedThumbnail(host, index, selection).pixels) << index;
    }
    ASSERT_TRUE(dragStored(&host, MANY - 1, onCanvas(host, 300, 200)));
    const RECT rect = placedRect({300, 200}, selection, image());
    const reference::Picture expected = withSelectionApplied(image(), selection, rect);
    ASSERT_TRUE(clickApply(rect));
    expectImage(expected);
}
