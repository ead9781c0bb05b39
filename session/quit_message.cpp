#include "session/quit_message.h"

#include "session/ground/session_extras.h"

static const WPARAM OWN_EXIT_CODE = 0x52455431;  // no code that a host would choose

void noteQuit(const MSG& message)
{
    if (message.message == WM_QUIT && message.wParam != OWN_EXIT_CODE) {
        sessionExtras.hostQuit = {true, (int)message.wParam};
    }
}

static void takeWaitingQuit()
{
    MSG message;
    if (PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) noteQuit(message);
}

void postSessionQuit()
{
    takeWaitingQuit();
    PostQuitMessage((int)OWN_EXIT_CODE);
}

void handQuitOn()
{
    takeWaitingQuit();
    if (sessionExtras.hostQuit.pending) PostQuitMessage(sessionExtras.hostQuit.code);
}
