#include "host/background.h"

#include "host/host_window.h"

constexpr DWORD MOVE_INTERVAL = 50, NOTICEABLE_TIME = 300;  // milliseconds

static DWORD WINAPI runWork(void* work)
{
    (*(const std::function<void()>*)work)();
    return 0;
}

static void serveAll(bool* quit)
{
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) *quit = true;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

static void serveUntilDone(HANDLE thread)
{
    bool quit = false;
    const DWORD start = GetTickCount();
    for (;;) {
        const DWORD woken = MsgWaitForMultipleObjects(1, &thread, FALSE, MOVE_INTERVAL, QS_ALLINPUT);
        if (woken == WAIT_OBJECT_0 || woken == WAIT_FAILED) break;
        serveAll(&quit);
        moveProgress();
        if (GetTickCount() - start > NOTICEABLE_TIME) showHostWindow();
    }
    WaitForSingleObject(thread, INFINITE);
    if (quit) PostQuitMessage(0);
}

void runInBackground(const std::wstring& what, Progress* progress, bool mayStop, const std::function<void()>& work)
{
    HANDLE thread = hostWindow() ? CreateThread(nullptr, 0, runWork, (void*)&work, 0, nullptr) : nullptr;
    if (!thread) {
        work();
        return;
    }
    beginProgress(what, progress, mayStop);
    serveUntilDone(thread);
    endProgress();
    CloseHandle(thread);
}
