// The quit messages of a session's thread. The system keeps one at a time and merges a new one into it; the session
// ends its own loop with one, and the host's, whenever it was posted, must still be there afterwards.
#pragma once

#include <windows.h>

// Ends the session's loop. A quit message of the host's that waits already is kept for handQuitOn.
void postSessionQuit();

// The message that ended the loop: it may have been the host's.
void noteQuit(const MSG& message);

// Removes the session's own quit message where it still waits, and posts the host's again.
void handQuitOn();
