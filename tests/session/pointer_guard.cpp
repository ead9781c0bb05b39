#include "tests/session/pointer_guard.h"

#include <cstdlib>
#include <string>

static HANDLE guardReady;

// Swallows what the display's own pointer does; only injected input passes.
static LRESULT CALLBACK guardInput(int code, WPARAM wp, LPARAM lp)
{
    const MSLLHOOKSTRUCT* event = (const MSLLHOOKSTRUCT*)lp;
    if (code == HC_ACTION && !(event->flags & LLMHF_INJECTED)) return 1;
    return CallNextHookEx(nullptr, code, wp, lp);
}

static DWORD WINAPI guardThread(void*)
{
    SetWindowsHookExA(WH_MOUSE_LL, guardInput, GetModuleHandleA(nullptr), 0);
    SetEvent(guardReady);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
    return 0;
}

POINT pointerRest()
{
    return {GetSystemMetrics(SM_CXSCREEN) - 10, GetSystemMetrics(SM_CYSCREEN) / 2};
}

// The display's pointer is moved only when the system's place changes, so it may need a step aside first.
void sendPointerToRest()
{
    const POINT rest = pointerRest();
    SetCursorPos(rest.x - 1, rest.y);
    SetCursorPos(rest.x, rest.y);
}

void guardPointer()
{
    const char* alone = getenv("RETOUCH_ALONE");
    EXPECT_NE("FALSE", std::string(alone ? alone : "")) << "other tests run beside this one, which moves the pointer";
    if (pointerIsGuarded()) return;
    guardReady = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    CloseHandle(CreateThread(nullptr, 0, guardThread, nullptr, 0, nullptr));
    WaitForSingleObject(guardReady, INFINITE);
    sendPointerToRest();
}

bool pointerIsGuarded()
{
    return guardReady != nullptr;
}
