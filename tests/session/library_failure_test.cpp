// Saves that fail half-way, sessions that end in the middle of something, and what is given back.
#include <algorithm>

#include "tests/session/hostile_files.h"
#include "tests/session/import_patch.h"
#include "tests/session/library_fixture.h"
#include "tests/session/resources_in_use.h"

// How the disk fails.
enum WriteFailure {
    FAILS_ONCE,  // one write
    STAYS_FULL,  // that one and all that follow
    TAKES_HALF,  // that one takes half of its bytes
};

static WriteFailure failure;
static int writesLeft;  // before it fails
static int writesSeen;

static BOOL WINAPI writeToBadDisk(HANDLE file, LPCVOID bytes, DWORD count, LPDWORD written, LPOVERLAPPED overlapped)
{
    ++writesSeen;
    const int left = writesLeft--;
    if (left == 0 && failure == TAKES_HALF) return WriteFile(file, bytes, count / 2, written, overlapped);
    if (left > 0 || (left < 0 && failure != STAYS_FULL)) return WriteFile(file, bytes, count, written, overlapped);
    if (written) *written = 0;
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

static BOOL WINAPI refuseMove(LPCWSTR, LPCWSTR, DWORD)
{
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

struct FailingLibrary : LibrarySession {
    FileBytes older = referenceTiff(roundSelection(8, 50, 40));
    const std::vector<std::string> olderNames = {"seld_003.tif", "seldib.lst"};

    // A library with one file, a selection that floats, and the library's window open.
    bool openWithOlderFile()
    {
        putFile(3, older);
        const std::string text = "003\r\nseld_003.tif\r\n";
        return writeFileBytes(listFile(), FileBytes(text.begin(), text.end())) && openOver(600, 400) &&
               draw(pentagon) && toggleLibraryWindow(&host);
    }

    void expectAsBefore()
    {
        EXPECT_EQ("003\r\nseld_003.tif\r\n", listText());
        EXPECT_EQ(olderNames, filesOfLibrary(library));
        EXPECT_TRUE(older == stored(3));
        EXPECT_EQ(1, storedCount(host));
    }
};

TEST_F(FailingLibrary, AWriteThatFailsAnywhereLeavesEverythingAsItWas)
{
    ASSERT_TRUE(openWithOlderFile());
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "WriteFile", (void*)writeToBadDisk));
    for (WriteFailure kind : {FAILS_ONCE, STAYS_FULL, TAKES_HALF}) {
        failure = kind;
        // The file's bytes, the list's new line and its counter are at least three writes.
        for (int before = 0; before < 3; ++before) {
            SCOPED_TRACE(testing::Message() << "kind " << kind << ", after " << before << " writes");
            writesLeft = before;
            ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
            expectAsBefore();
        }
    }
    writesLeft = 1000;
    writesSeen = 0;
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    undoPatch(&patch);
    EXPECT_EQ(3, writesSeen) << "each of them has failed above";
    EXPECT_EQ("004\r\nseld_003.tif\r\nseld_004.tif\r\n", listText());
    EXPECT_TRUE(stored(4) == referenceTiff(drawnSelection(image(), pentagon).selection));
    EXPECT_EQ(2, storedCount(host));
}

TEST_F(FailingLibrary, AFileThatCannotGetItsNameLeavesEverythingAsItWas)
{
    ASSERT_TRUE(openWithOlderFile());
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "MoveFileExW", (void*)refuseMove));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    undoPatch(&patch);
    expectAsBefore();
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    EXPECT_EQ("004\r\nseld_003.tif\r\nseld_004.tif\r\n", listText());
}

// The order of what reaches the disk: flushed before it gets its name, so that no power cut leaves zeros in view.
static std::string diskOrder;
static BOOL flushWorks;
static ImportPatch flushPatch, movePatch;

static BOOL WINAPI watchedFlush(HANDLE file)
{
    diskOrder += 'f';
    return flushWorks && ((BOOL(WINAPI*)(HANDLE))flushPatch.before)(file);
}

static BOOL WINAPI watchedMove(LPCWSTR from, LPCWSTR to, DWORD flags)
{
    diskOrder += 'm';
    return ((BOOL(WINAPI*)(LPCWSTR, LPCWSTR, DWORD))movePatch.before)(from, to, flags);
}

TEST_F(FailingLibrary, AFileIsOnTheDiskBeforeItGetsItsName)
{
    ASSERT_TRUE(openWithOlderFile());
    ASSERT_TRUE(patchImport(&flushPatch, library.module, "FlushFileBuffers", (void*)watchedFlush));
    ASSERT_TRUE(patchImport(&movePatch, library.module, "MoveFileExW", (void*)watchedMove));
    flushWorks = FALSE;
    diskOrder.clear();
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    EXPECT_EQ("f", diskOrder);
    expectAsBefore();
    flushWorks = TRUE;
    diskOrder.clear();
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    EXPECT_EQ("fm", diskOrder);
    undoPatch(&movePatch);
    undoPatch(&flushPatch);
    EXPECT_EQ(2, storedCount(host));
}

// Another program holds the list file, or the file whose number is next: neither is touched, nothing is left behind.
TEST_F(FailingLibrary, FilesThatAreHeldOpenStayAsTheyAre)
{
    ASSERT_TRUE(openWithOlderFile());
    HANDLE held = CreateFileA(listFile().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, held);
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    expectAsBefore();
    CloseHandle(held);
    const std::string next = libraryDirectory(library) + storedName(4);
    ASSERT_TRUE(writeFileBytes(next, {'x'}));
    held = CreateFileA(next.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, held);
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    CloseHandle(held);
    EXPECT_EQ(FileBytes{'x'}, fileBytes(next));
    DeleteFileA(next.c_str());
    expectAsBefore();
}

static HANDLE WINAPI readOnlyFolder(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                    DWORD creation, DWORD flags, HANDLE pattern)
{
    if (!(access & GENERIC_WRITE)) return CreateFileW(path, access, share, security, creation, flags, pattern);
    SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_HANDLE_VALUE;
}

TEST_F(FailingLibrary, AFolderThatIsReadOnlyStaysAsItIs)
{
    ASSERT_TRUE(openWithOlderFile());
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "CreateFileW", (void*)readOnlyFolder));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    undoPatch(&patch);
    expectAsBefore();
}

// The first save of all: there is no directory and no list yet, and after a failure there is none again.
TEST_F(FailingLibrary, AFirstSaveThatFailsLeavesNoListAndNoDirectory)
{
    ASSERT_TRUE(openOver(600, 400));
    ASSERT_TRUE(draw(pentagon));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "WriteFile", (void*)writeToBadDisk));
    for (WriteFailure kind : {FAILS_ONCE, STAYS_FULL, TAKES_HALF}) {
        failure = kind;
        // The list's first line, the file's bytes, the list's new line and its counter.
        for (int before = 0; before < 4; ++before) {
            SCOPED_TRACE(testing::Message() << "kind " << kind << ", after " << before << " writes");
            writesLeft = before;
            ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
            EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesA((library.directory + "SELDIB").c_str()));
        }
    }
    undoPatch(&patch);
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    EXPECT_EQ("001\r\nseld_001.tif\r\n", listText());
    EXPECT_EQ(1, storedCount(host));
}

// The frame is wider than the system's metrics say, as where borders are padded.
static int WINAPI narrowFrames(int metric)
{
    const int value = GetSystemMetrics(metric);
    return metric == SM_CYFRAME || metric == SM_CXFRAME ? value - 2 : value;
}

TEST_F(FailingLibrary, TheWindowKeepsItsWidthWherePaddedBordersAreWide)
{
    ASSERT_TRUE(openWithOlderFile());
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "GetSystemMetrics", (void*)narrowFrames));
    const HWND window = libraryWindow(host);
    RECT before, after;
    GetWindowRect(window, &before);
    for (int change : {60, -40, 25}) {
        GetWindowRect(window, &after);
        SetWindowPos(window, nullptr, 0, 0, after.right - after.left, after.bottom - after.top + change,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        ASSERT_TRUE(settle(&host));
    }
    undoPatch(&patch);
    GetWindowRect(window, &after);
    EXPECT_EQ(before.right - before.left, after.right - after.left);
    EXPECT_EQ(before.bottom - before.top + 45, after.bottom - after.top);
}

TEST_F(FailingLibrary, ADirectoryThatCannotBeMadeSavesNothing)
{
    ASSERT_TRUE(writeFileBytes(library.directory + "SELDIB", {'x'}));
    ASSERT_TRUE(openOver(600, 400));
    ASSERT_TRUE(draw(pentagon));
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(clickInLibrary(&host, ID_LIBRARY_SAVE));
    EXPECT_EQ(0, storedCount(host));
    EXPECT_EQ(FileBytes{'x'}, fileBytes(library.directory + "SELDIB"));
    closeAndCheck(before);
    ASSERT_TRUE(DeleteFileA((library.directory + "SELDIB").c_str()));
}

TEST_F(FailingLibrary, ASessionClosedWhileTheQuestionIsAskedDeletesNothing)
{
    ASSERT_TRUE(openWithOlderFile());
    ASSERT_TRUE(clickStored(&host, 0));
    ASSERT_TRUE(askToDelete(&host));
    ASSERT_TRUE(clickControl(&host, ID_CLOSE));
    ASSERT_TRUE(waitForReturn(&host));
    checkReturned(0);
    EXPECT_EQ(olderNames, filesOfLibrary(library));
    expectUntouched();
}

TEST_F(FailingLibrary, ALibraryClosedWhileTheQuestionIsAskedDeletesNothing)
{
    ASSERT_TRUE(openWithOlderFile());
    ASSERT_TRUE(clickStored(&host, 0));
    ASSERT_TRUE(askToDelete(&host));
    ASSERT_TRUE(clickControl(&host, ID_LIBRARY));
    ASSERT_TRUE(waitUntil("the window to go", [&] { return !libraryWindow(host) && !deleteQuestion(host); }));
    EXPECT_EQ(olderNames, filesOfLibrary(library));
    closeAndCheck(before);
}

TEST_F(FailingLibrary, ASessionClosedInTheMiddleOfADragEnds)
{
    ASSERT_TRUE(openWithOlderFile());
    ASSERT_TRUE(grabStored(&host, 0));
    PostMessageA(host.dialog, WM_CLOSE, 0, 0);
    ASSERT_TRUE(waitForReturn(&host));
    letGoOfButton();
    checkReturned(0);
    expectUntouched();
}

// Opens the library, loads each of its files onto the image in turn, and closes it.
static void useLibrary(FailingLibrary* test)
{
    Host* const host = &test->host;
    ASSERT_TRUE(toggleLibraryWindow(host));
    for (int i = 0; i < storedCount(*host); ++i) {
        ASSERT_TRUE(dragStored(host, i, onCanvas(*host, 150, 150)));
    }
    ASSERT_TRUE(clickInLibrary(host, ID_LIBRARY_SAVE));
    ASSERT_TRUE(toggleLibraryWindow(host));
    ASSERT_TRUE(clickControl(host, ID_BRUSH));  // drops what floats
}

TEST_F(FailingLibrary, NothingIsLeftBehind)
{
    HostileFiles files(5);
    for (int i = 1; i <= 20; ++i)
        putFile(i, i % 4 ? files.next() : referenceTiff(roundSelection((unsigned)i, 40, 30)));
    ASSERT_TRUE(writeFileBytes(listFile(), {'0', '9', '9', '\r', '\n'}));
    ASSERT_TRUE(openOver(600, 400));
    ASSERT_TRUE(watchBlocks(library.module));
    for (int i = 0; i < 2; ++i)  // the system fills caches of its own at first
        ASSERT_NO_FATAL_FAILURE(useLibrary(this));
    expectGivenBack(10, 2, [&] { ASSERT_NO_FATAL_FAILURE(useLibrary(this)); });  // one in every third would be 3
    closeAndCheck(before);
    stopWatchingBlocks();
}
