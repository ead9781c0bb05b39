// Runs the library's entry on a thread of its own, as a host would, while the test's thread moves the
// real pointer, presses its button, and watches what the session's thread retrieves.
//
// Nothing here sleeps for a guessed time: waitUntil polls a condition and fails the test, with a picture
// of the screen, when it has not come true within WAIT_LIMIT_MS.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "include/kovrtch32.h"
#include "tests/session/control_ids.h"
#include "tests/session/host_image.h"
#include "tests/session/message_log.h"

constexpr DWORD WAIT_LIMIT_MS = 20000;

constexpr int CANVAS_ID = 12345;
constexpr UINT POINTER_ENTERED = 1025;
constexpr UINT POINTER_LEFT = 1026;

// The library, loaded from a fresh directory of its own: its settings file lies beside it.
struct Library {
    std::string directory;
    HMODULE module;
    RetouchEntry entry;
};

bool loadLibrary(Library* library);
bool loadLibraryIn(Library* library, const std::string& directory);  // made if need be; its parent exists
std::string freshDirectory();                                        // a path that nothing lies under yet
void unloadLibrary(Library* library);                                // also removes the directory

// What one call of the entry is given. stackOffset (i686 only): how far the stack pointer is from a
// multiple of 16 at the call.
struct CallArguments {
    HGLOBAL image;
    RECT* dialogRect;
    POINT* palettePos;
    HWND parent;
    unsigned stackOffset;
};

// What one call of the entry left behind.
struct CallOutcome {
    int result;
    int windowsLeft;      // top-level windows of the thread besides the host's own
    bool quitLeft;        // a quit message in the thread's queue
    int quitCode;         // its exit code
    bool parentActive;    // the host's window is the thread's active one
    bool classLeft;       // the canvas class still registered
    bool parentDisabled;  // the host's window still disabled
};

// The host: a thread with a plain window and a message loop.
struct Host {
    Library* library;
    HANDLE thread;
    DWORD threadId;
    HWND control;  // message-only window that takes the test's orders
    HWND parent;   // the host's visible window
    CallArguments arguments;
    CallOutcome outcome;
    HANDLE ready;
    volatile LONG running;  // 1 while the entry has not returned

    HWND dialog, canvas, palette;  // of the running session; 0 until found
};

bool startHost(Host* host, Library* library);
void stopHost(Host* host);  // ends a session that still runs, then the thread

// Calls the entry on the host's thread without waiting for anything.
void beginCall(Host* host, const CallArguments& arguments);
// Waits until the entry has returned.
bool waitForReturn(Host* host);
// beginCall and waitForReturn, for calls that are expected not to open a session.
bool callAndReturn(Host* host, const CallArguments& arguments);
// beginCall, then waits until dialog, canvas and palette are visible and the thread is at rest.
bool openSession(Host* host, const CallArguments& arguments);

// Looks for the session's windows; true when dialog and palette are visible.
bool sessionIsOpen(Host* host);

// A visible window of the session that has a control of this id; null while there is none.
HWND dialogWith(const Host& host, int control);

// Polls; on failure adds a test failure that names `what` and saves a picture of the screen.
bool waitUntil(const char* what, const std::function<bool()>& condition);
// Waits until the session's thread has dispatched all that is queued (posted, input, paint).
bool settle(Host* host);

// Runs the function on the host's thread, from its message loop (also one inside the library), and waits for it.
void runOnHost(Host* host, const std::function<void()>& function);

// Returns when the screen shows what the session's thread has painted so far. Under Wine that reaches the screen when
// the thread waits for messages, and by a connection of its own.
void letScreenFollow();

// Class name of a window.
std::string classOf(HWND window);
