// Records what one thread retrieves from its queue and some of what is sent to its windows.
#pragma once

#include <windows.h>

#include <vector>

// A message that the session's thread retrieved from its queue, or (sent) that was sent to one of its windows.
struct SeenMessage {
    HWND window;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    POINT screen;  // pointer position of a retrieved message
    bool sent;
};

// To be called on the thread itself.
void hookMessages(DWORD threadId);
void unhookMessages();
void clearLog();

// The log of messages, in order.
size_t seenCount();
std::vector<SeenMessage> seenSince(size_t first);
bool wasSeen(size_t first, HWND window, UINT message);  // window 0: any
int countSeen(size_t first, HWND window, UINT message);
