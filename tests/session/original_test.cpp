// The host gets its image back whatever fails or is done to its block meanwhile, and Close and Save are final.
#include "tests/session/import_patch.h"
#include "tests/session/session_fixture.h"

struct Original : SessionTest {
    std::vector<uint8_t> before, edited;
    ImportPatch patch = {};

    void TearDown() override
    {
        if (patch.slot) undoPatch(&patch);
        SessionTest::TearDown();
    }

    void openAndPaint()
    {
        ASSERT_TRUE(open());
        StrokeReplay replay = beginReplay(host, photo);
        before = replay.before;
        ASSERT_TRUE(chooseBrush(&host, &replay));
        ASSERT_TRUE(drawStroke(&host, {{40, 40}, {90, 60}}));
        edited = snapshot(photo);
        ASSERT_FALSE(before == edited) << "the stroke must have painted";
    }

    void expectGivenBack()
    {
        ASSERT_TRUE(waitForReturn(&host));
        if (patch.slot) undoPatch(&patch);
        patch.slot = nullptr;
        checkReturned(0);
        EXPECT_TRUE(before == snapshot(photo));
    }

    UINT locks() { return GlobalFlags(photo.block) & GMEM_LOCKCOUNT; }
};

static LPVOID WINAPI lockNothing(HGLOBAL)
{
    return nullptr;
}

static SIZE_T WINAPI sizeUnknown(HGLOBAL)
{
    return 0;
}

static HANDLE WINAPI noProperty(HWND, LPCSTR)
{
    return nullptr;
}

struct LateFailure {
    const char* import;
    void* replacement;
};

TEST_F(Original, ComesBackWhateverFailsLater)
{
    const LateFailure failures[] = {
        {"GlobalLock", (void*)lockNothing}, {"GlobalSize", (void*)sizeUnknown}, {"GetPropA", (void*)noProperty}};
    for (const LateFailure& failure : failures) {
        SCOPED_TRACE(failure.import);
        ASSERT_NO_FATAL_FAILURE(openAndPaint());
        ASSERT_TRUE(patchImport(&patch, library.module, failure.import, failure.replacement));
        ASSERT_TRUE(PostMessageA(host.palette, WM_COMMAND, ID_CLOSE, 0));
        expectGivenBack();
        EXPECT_EQ(0u, locks());
    }
}

TEST_F(Original, ComesBackThroughTheTitleBarWhenNothingCanBeLocked)
{
    openAndPaint();
    ASSERT_TRUE(patchImport(&patch, library.module, "GlobalLock", (void*)lockNothing));
    ASSERT_TRUE(PostMessageA(host.dialog, WM_CLOSE, 0, 0));
    expectGivenBack();
}

TEST_F(Original, TheImageIsLockedForTheSessionOnly)
{
    EXPECT_EQ(0u, locks());
    openAndPaint();
    EXPECT_EQ(1u, locks()) << "at rest, between two operations";
    closeAndCheck(before);
    EXPECT_EQ(0u, locks());
    openAndPaint();
    saveAndCheck();
    EXPECT_EQ(0u, locks());
}

TEST_F(Original, ComesBackToAHostThatUnlocksItsBlock)
{
    openAndPaint();
    for (int i = 0; i < 5; ++i)
        GlobalUnlock(photo.block);
    ASSERT_TRUE(clickControl(&host, ID_CLOSE));
    expectGivenBack();
}

TEST_F(Original, ABlockThatTheHostFreedIsLeftAlone)
{
    openAndPaint();
    runOnHost(&host, [&] {
        while (locks())
            GlobalUnlock(photo.block);
        EXPECT_EQ(nullptr, GlobalFree(photo.block));
        PostMessageA(host.dialog, WM_CLOSE, 0, 0);
    });
    ASSERT_TRUE(waitForReturn(&host));
    checkReturned(0);
    photo.block = nullptr;
    usePhoto(300, 200);
    openAndPaint();
    closeAndCheck(before);
}

TEST_F(Original, ABlockThatTheHostCutShortIsLeftAlone)
{
    openAndPaint();
    runOnHost(&host, [&] {
        while (locks())
            GlobalUnlock(photo.block);
        EXPECT_EQ(photo.block, GlobalReAlloc(photo.block, photo.bitmapBytes / 2, GMEM_MOVEABLE));
        PostMessageA(host.dialog, WM_CLOSE, 0, 0);
    });
    ASSERT_TRUE(waitForReturn(&host));
    checkReturned(0);
}

// From the given call on, for one call or for all that follow.
static int locksUntilFailure;
static bool goesOnFailing, lockHasFailed;

static LPVOID WINAPI failingLock(HGLOBAL handle)
{
    --locksUntilFailure;
    if (locksUntilFailure > 0 || (locksUntilFailure < 0 && !goesOnFailing)) return GlobalLock(handle);
    lockHasFailed = true;
    return nullptr;
}

// A session that cannot lock what it must give back does not start; one that starts gives it back.
TEST_F(Original, NoSessionStartsThatCouldNotGiveItBack)
{
    const std::vector<uint8_t> asMade = snapshot(photo);
    ASSERT_TRUE(patchImport(&patch, library.module, "GlobalLock", (void*)failingLock));
    int refused = 0;
    for (bool forEver : {false, true}) {
        goesOnFailing = forEver;
        for (int n = 1; n <= 12; ++n) {
            SCOPED_TRACE(testing::Message() << n << (forEver ? " and all that follow" : ""));
            lockHasFailed = false;
            locksUntilFailure = n;
            beginCall(&host, arguments());
            ASSERT_TRUE(waitUntil("a session or a refusal", [&] { return !host.running || sessionIsOpen(&host); }));
            refused += !host.running;
            if (host.running) PostMessageA(host.dialog, WM_CLOSE, 0, 0);
            ASSERT_TRUE(waitForReturn(&host));
            EXPECT_TRUE(lockHasFailed);
            checkReturned(0);
            EXPECT_EQ(0u, locks());
            EXPECT_TRUE(asMade == snapshot(photo));
        }
    }
    EXPECT_GE(refused, 6) << "record, image, copy, for once and for ever";
    undoPatch(&patch);
    patch.slot = nullptr;
    openAndPaint();
    closeAndCheck(before);
}

// ---- Close and Save are final: what is posted in one go with them comes before the window's end ----

TEST_F(Original, NothingPostedBehindCloseGetsIntoTheImage)
{
    openAndPaint();
    ASSERT_TRUE(clickControl(&host, ID_UNDO));
    ASSERT_TRUE(movePointerOnCanvas(&host, 120, 90));
    runOnHost(&host, [&] {
        PostMessageA(host.palette, WM_COMMAND, ID_CLOSE, 0);
        PostMessageA(host.palette, WM_COMMAND, ID_REDO, 0);
        PostMessageA(host.canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(150, 100));
        PostMessageA(host.canvas, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(170, 100));
        PostMessageA(host.canvas, WM_LBUTTONUP, 0, MAKELPARAM(170, 100));
        PostMessageA(host.palette, WM_COMMAND, ID_SAVE, 0);
    });
    expectGivenBack();
}

// Whatever way something still gets in: the end gives back once more.
TEST_F(Original, WhatGotInBehindCloseIsTakenBack)
{
    openAndPaint();
    runOnHost(&host, [&] {
        SendMessageA(host.palette, WM_COMMAND, ID_CLOSE, 0);
        BYTE* const bytes = (BYTE*)GlobalLock(photo.block);
        memset(bytes + 40, 77, 3000);
        GlobalUnlock(photo.block);
    });
    expectGivenBack();
}

TEST_F(Original, NothingPostedBehindSaveChangesWhatIsSaved)
{
    openAndPaint();
    ASSERT_TRUE(movePointerOnCanvas(&host, 120, 90));
    runOnHost(&host, [&] {
        PostMessageA(host.palette, WM_COMMAND, ID_SAVE, 0);
        PostMessageA(host.palette, WM_COMMAND, ID_UNDO, 0);
        PostMessageA(host.canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(150, 100));
        PostMessageA(host.canvas, WM_LBUTTONUP, 0, MAKELPARAM(150, 100));
        PostMessageA(host.palette, WM_COMMAND, ID_CLOSE, 0);
    });
    ASSERT_TRUE(waitForReturn(&host));
    checkReturned(1);
    EXPECT_TRUE(edited == snapshot(photo));
}
