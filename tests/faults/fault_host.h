// A host whose library may fail at any call: it goes on clicking like a person, waits a little for what ought to come,
// and takes it as it is when it does not.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "include/kovrtch32.h"

struct FaultHost {
    std::string directory;  // of the library: its settings and selections lie there
    HMODULE library, controls;
    RetouchEntry entry;
    DWORD threadId;
    HWND control, parent;
    HGLOBAL image;
    volatile LONG running;
    int result;
    bool quitLeft, classLeft, disabledLeft;
    int windowsLeft;
    HWND dialog, canvas, palette, shelf, contrast, question;  // as findWindows found them; null when there is none
};

constexpr int PHOTO_WIDTH = 240, PHOTO_HEIGHT = 180;

// Loads the libraries from a directory of their own and starts the host's thread. Ends the program when it cannot.
void startFaultHost(FaultHost* host);

// Posts the call of the entry, waits until the session is open or over.
bool openSession(FaultHost* host);
// Presses Save (8) or Close (2); a person who sees no effect tries again, and in the end closes the window.
void leaveSession(FaultHost* host, int button);

void findWindows(FaultHost* host);
bool waitForWindow(FaultHost* host, HWND FaultHost::*window, bool present);
void settle(FaultHost* host);  // until the thread has painted and has nothing left to do, or five seconds

// A pointer of the host's own (see posted_pointer.h), in canvas client coordinates or at the middle of a control.
void movePointer(FaultHost* host, HWND window, POINT screen);
void press(FaultHost* host);
void release(FaultHost* host);
void drag(FaultHost* host, const std::vector<POINT>& clientPoints);
void click(FaultHost* host, HWND window);
void clickTool(FaultHost* host, int id);
void type(FaultHost* host, const char* text);
POINT onScreen(const FaultHost& host, int x, int y);
