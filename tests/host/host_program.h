// retouch.exe as a program of its own: started from the folder of the tests or from another one, its windows found,
// its buttons pressed, its end waited for.
#pragma once

#include "tests/host/test_folder.h"

#include <functional>
#include <windows.h>

constexpr int CLOSE_BUTTON = 2, SAVE_BUTTON = 8, BRUSH_BUTTON = 117;  // of the palette

// True as soon as `holds` does; a failure of the test after a minute.
bool waitUntil(const char* what, const std::function<bool()>& holds);

// The folder in which the programs lie, with its separator.
std::wstring folderOfPrograms();

struct HostProgram {
    PROCESS_INFORMATION process = {};
    std::wstring log;  // what it said, when it was given a place to

    ~HostProgram();

    // The line begins with the program. With `terminal` false it gets neither handles nor console.
    bool start(const std::wstring& program, const std::wstring& arguments, const TestFolder& folder,
               bool terminal = true);
    bool startRetouch(const std::wstring& arguments, const TestFolder& folder, bool terminal = true);
    bool runs() const;
    int exitCode() const;       // waits for the end
    std::wstring said() const;  // so far
};

// The visible windows of one program; null those that are not there.
struct HostWindows {
    HWND host, editor, canvas, palette;
    HWND box;  // a message box or a dialog of the system
};

HostWindows windowsOf(const HostProgram& program);
bool waitForHost(const HostProgram& program, HostWindows* windows);
bool waitForEditor(const HostProgram& program, HostWindows* windows);
bool waitForBox(const HostProgram& program, HostWindows* windows);

// Presses a button of the box that is there, and waits until the box is gone.
bool answerBox(const HostProgram& program, int button);

// All text in a message box.
std::wstring textIn(HWND box);

// An input event of the real pointer at a point of the screen; flags as for mouse_event, 0 for a move.
void sendMouse(DWORD flags, POINT at);

// A press of the left button in the middle of a window, by the real pointer.
void clickOn(HWND window);

// Presses a button of the palette until the editor is gone.
bool endSession(const HostProgram& program, int button);

// Files dropped onto one of its windows, as the shell does it.
void dropOn(const HostProgram& program, HWND window, const std::vector<std::wstring>& paths);

// A key of the real keyboard, with Control held or not.
void pressKey(WORD key, bool control = false);
// One that is pressed before a window has the keyboard is lost; then it is pressed once more.
bool pressKeyUntil(HWND window, WORD key, bool control, const std::function<bool()>& holds);

// A bitmap file, 50 by 35 pixels in many colours.
std::vector<uint8_t> smallPhoto();

inline bool tells(const std::wstring& text, const std::wstring& words)
{
    return text.find(words) != std::wstring::npos;
}
