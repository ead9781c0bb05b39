// Saves that fail half-way, sessions that end in the middle of something, and what is given back.
#include <algorithm>

#include "tests/session/hostile_files.h"
#include "tests/session/import_patch.h"
#include "tests/session/library_fixture.h"
#include "tests/session/resources_in_use.h"

static const Corners pentagon = {{100, 100}, {200, 80}, {260, 200}, {150, 240}, {90, 160}};

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
    const ResourcesInUse atRest = resourcesInUse();
    for (int i = 0; i < 10; ++i)
        ASSERT_NO_FATAL_FAILURE(useLibrary(this));
    expectGivenBack(atRest, 2);  // one in every third round would be 3
    closeAndCheck(before);
    stopWatchingBlocks();
}
