// The program's window: the owner of the editor and of every dialog, from the first photo's opening until the last
// result is saved. While no photo is being retouched it says what to do, or shows the result; while a file is read or
// written, how far that is.
#pragma once

#include "host/host_menu.h"
#include "host/photo_file.h"

// Makes the window, still hidden. False where there is no display.
bool openHostWindow();
void closeHostWindow();
// Hides it for good, from any thread, where the program ends without its main thread.
void forsakeHostWindow();

HWND hostWindow();  // null when there is none
void showHostWindow();

void showTitle(const std::wstring& photo);  // its name; empty: none
void showHint();
void showStatus(const std::wstring& line);  // at the window's bottom
// The picture stays the caller's, until it is taken away by null.
void showPicture(HGLOBAL picture);

// The part of the screen where the editor and its palette go, in pixels.
RECT roomForEditor();

// From begin to end the bar is shown and no command is taken. mayStop: closing the window sets progress->stop.
void beginProgress(const std::wstring& what, Progress* progress, bool mayStop);
void moveProgress();
void endProgress();

// Waits for a message and serves it. False when the user leaves.
bool serveMessage();
// The command that was chosen since the last call.
HostCommand takeCommand();
