// The menu of the program's window, and its keys.
#pragma once

#include <windows.h>

enum HostCommand {
    COMMAND_NONE = 0,
    COMMAND_OPEN = 100,
    COMMAND_SAVE_AS,
    COMMAND_EXIT,
    COMMAND_GUIDE,
    COMMAND_ABOUT,
};

HMENU createHostMenu();
HACCEL createHostKeys();
