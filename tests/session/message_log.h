// Records what one thread retrieves from its queue and some of what is sent to its windows.
#pragma once

#include "tests/session/session_driver.h"

// To be called on the thread itself.
void hookMessages(DWORD threadId);
void unhookMessages();
void clearLog();
