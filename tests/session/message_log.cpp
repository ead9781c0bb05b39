#include "tests/session/message_log.h"

static SRWLOCK lock = SRWLOCK_INIT;
static std::vector<SeenMessage>* seenMessages;  // on the heap: outlives the thread's last message
static HHOOK retrievedHook, sentHook;

// Sent messages worth keeping; all others would only fill the log.
static const UINT loggedWhenSent[] = {WM_HSCROLL,      WM_VSCROLL,         WM_COMMAND,       WM_ENTERSIZEMOVE,
                                      WM_EXITSIZEMOVE, WM_QUERYNEWPALETTE, WM_PALETTECHANGED};

static void append(const SeenMessage& seen)
{
    AcquireSRWLockExclusive(&lock);
    seenMessages->push_back(seen);
    ReleaseSRWLockExclusive(&lock);
}

static LRESULT CALLBACK onRetrieved(int code, WPARAM wp, LPARAM lp)
{
    const MSG* message = (const MSG*)lp;
    if (code == HC_ACTION && wp == PM_REMOVE)
        append({message->hwnd, message->message, message->wParam, message->lParam, message->pt, false});
    return CallNextHookEx(retrievedHook, code, wp, lp);
}

static LRESULT CALLBACK onSent(int code, WPARAM wp, LPARAM lp)
{
    const CWPSTRUCT* message = (const CWPSTRUCT*)lp;
    if (code == HC_ACTION)
        for (UINT logged : loggedWhenSent)
            if (message->message == logged)
                append({message->hwnd, logged, message->wParam, message->lParam, {0, 0}, true});
    return CallNextHookEx(sentHook, code, wp, lp);
}

void hookMessages(DWORD threadId)
{
    retrievedHook = SetWindowsHookExA(WH_GETMESSAGE, onRetrieved, nullptr, threadId);
    sentHook = SetWindowsHookExA(WH_CALLWNDPROC, onSent, nullptr, threadId);
}

void unhookMessages()
{
    UnhookWindowsHookEx(retrievedHook);
    UnhookWindowsHookEx(sentHook);
}

void clearLog()
{
    AcquireSRWLockExclusive(&lock);
    if (!seenMessages) seenMessages = new std::vector<SeenMessage>;
    seenMessages->clear();
    ReleaseSRWLockExclusive(&lock);
}

size_t seenCount()
{
    AcquireSRWLockShared(&lock);
    const size_t count = seenMessages->size();
    ReleaseSRWLockShared(&lock);
    return count;
}

std::vector<SeenMessage> seenSince(size_t first)
{
    AcquireSRWLockShared(&lock);
    std::vector<SeenMessage> copy(seenMessages->begin() + (ptrdiff_t)first, seenMessages->end());
    ReleaseSRWLockShared(&lock);
    return copy;
}

int countSeen(size_t first, HWND window, UINT message)
{
    int count = 0;
    for (const SeenMessage& seen : seenSince(first))
        if (seen.message == message && (!window || seen.window == window)) ++count;
    return count;
}

bool wasSeen(size_t first, HWND window, UINT message)
{
    return countSeen(first, window, message) > 0;
}
