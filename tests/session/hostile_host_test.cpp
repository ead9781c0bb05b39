// Hosts that do what none should: discard their block, call again from inside or from another thread, have a parent in
// another process that ends.
#include "tests/session/session_fixture.h"

constexpr char PARENT_CLASS[] = "ParentOfAnotherProcess";

struct HostileHost : SessionTest {
    std::vector<uint8_t> before;

    void openAndPaint(const CallArguments& with)
    {
        ASSERT_TRUE(openSession(&host, with));
        StrokeReplay replay = beginReplay(host, photo);
        before = replay.before;
        ASSERT_TRUE(chooseBrush(&host, &replay));
        ASSERT_TRUE(drawStroke(&host, {{40, 40}, {90, 60}}));
        ASSERT_FALSE(before == snapshot(photo)) << "the stroke must have painted";
    }
};

TEST_F(HostileHost, ABlockThatWasDiscardedIsLeftAlone)
{
    openAndPaint(arguments());
    runOnHost(&host, [&] {
        while (GlobalFlags(photo.block) & GMEM_LOCKCOUNT)
            GlobalUnlock(photo.block);
        EXPECT_TRUE(GlobalDiscard(photo.block));
        InvalidateRect(host.canvas, nullptr, TRUE);
        UpdateWindow(host.canvas);
        PostMessageA(host.palette, WM_COMMAND, ID_UNDO, 0);
        PostMessageA(host.palette, WM_COMMAND, ID_CLOSE, 0);
    });
    ASSERT_TRUE(waitForReturn(&host));
    checkReturned(0);
    GlobalFree(photo.block);
    photo.block = nullptr;
    usePhoto(300, 200);
    openAndPaint(arguments());
    closeAndCheck(before);
}

struct SecondCall {
    const CallArguments* arguments;
    RetouchEntry entry;
    int result;
};

static DWORD WINAPI callEntry(LPVOID parameter)
{
    SecondCall* const call = (SecondCall*)parameter;
    const CallArguments& with = *call->arguments;
    call->result = call->entry(with.parent, with.image, with.dialogRect, with.palettePos);
    return 0;
}

TEST_F(HostileHost, ASecondCallIsRefusedFromInsideAndFromAnotherThread)
{
    HostImage other = makePhoto(50, 40, 3);
    const std::vector<uint8_t> othersBytes = snapshot(other);
    openAndPaint(arguments());
    const std::vector<uint8_t> edited = snapshot(photo);
    CallArguments with = arguments();
    with.image = other.block;
    with.parent = host.parent;
    SecondCall call = {&with, library.entry, -1};
    runOnHost(&host, [&] { callEntry(&call); });
    EXPECT_EQ(0, call.result) << "from inside";
    call.result = -1;
    const HANDLE thread = CreateThread(nullptr, 0, callEntry, &call, 0, nullptr);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(thread, WAIT_LIMIT_MS));
    CloseHandle(thread);
    EXPECT_EQ(0, call.result) << "from another thread";
    EXPECT_TRUE(othersBytes == snapshot(other));
    EXPECT_TRUE(edited == snapshot(photo));
    EXPECT_FALSE(IsWindowEnabled(host.parent)) << "the session goes on";
    closeAndCheck(before);
    freeImage(&other);
}

TEST_F(HostileHost, EachThreadMayCallInItsTurn)
{
    for (int turn = 0; turn < 3; ++turn) {
        openAndPaint(arguments());
        closeAndCheck(before);
        stopHost(&host);
        ASSERT_TRUE(startHost(&host, &library));
    }
}

// The other process: a window, until it is told to close or killed.
TEST(DISABLED_ParentProcess, ShowsAWindow)
{
    WNDCLASSA plain = {};
    plain.lpfnWndProc = DefWindowProcA;
    plain.hInstance = GetModuleHandleA(nullptr);
    plain.lpszClassName = PARENT_CLASS;
    RegisterClassA(&plain);
    const HWND window = CreateWindowA(PARENT_CLASS, "Another", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 1300, 900, 200, 120,
                                      nullptr, nullptr, plain.hInstance, nullptr);
    MSG message;
    while (IsWindow(window) && GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
}

struct ParentElsewhere : HostileHost {
    PROCESS_INFORMATION process = {};

    void SetUp() override
    {
        HostileHost::SetUp();
        char program[MAX_PATH];
        GetModuleFileNameA(nullptr, program, sizeof program);
        std::string command =
            std::string("\"") + program +
            "\" --gtest_brief=1 --gtest_also_run_disabled_tests --gtest_filter=DISABLED_ParentProcess.*";
        STARTUPINFOA startup = {};
        startup.cb = sizeof startup;
        ASSERT_TRUE(
            CreateProcessA(nullptr, &command[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process));
        ASSERT_TRUE(
            waitUntil("the other process's window", [] { return FindWindowA(PARENT_CLASS, nullptr) != nullptr; }));
    }
    void TearDown() override
    {
        TerminateProcess(process.hProcess, 0);
        WaitForSingleObject(process.hProcess, WAIT_LIMIT_MS);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        HostileHost::TearDown();
    }
    CallArguments elsewhere()
    {
        CallArguments with = arguments();
        with.parent = FindWindowA(PARENT_CLASS, nullptr);
        return with;
    }
};

TEST_F(ParentElsewhere, IsDisabledForTheSessionOnly)
{
    const CallArguments with = elsewhere();
    openAndPaint(with);
    EXPECT_FALSE(IsWindowEnabled(with.parent));
    closeAndCheck(before);
    EXPECT_TRUE(IsWindowEnabled(with.parent));
}

// Whether the system takes the session's windows along or not: the way out is a Close.
TEST_F(ParentElsewhere, MayEndInTheMiddle)
{
    openAndPaint(elsewhere());
    TerminateProcess(process.hProcess, 0);
    ASSERT_EQ(WAIT_OBJECT_0, WaitForSingleObject(process.hProcess, WAIT_LIMIT_MS));
    ASSERT_TRUE(waitUntil("the window to go", [] { return !FindWindowA(PARENT_CLASS, nullptr); }));
    if (IsWindow(host.dialog)) PostMessageA(host.dialog, WM_CLOSE, 0, 0);
    ASSERT_TRUE(waitForReturn(&host));
    checkReturned(0);
    EXPECT_TRUE(before == snapshot(photo));
}
