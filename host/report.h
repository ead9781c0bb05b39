// What the program tells its user, and its exit codes.
#pragma once

#include <string>

enum ExitCode {
    exitSaved = 0,
    exitNothingSaved = 1,  // the user closed the editor, or cancelled a file dialog
    exitUsage = 2,
    exitMissing = 3,    // no such photo, a folder, or access denied
    exitNotAPhoto = 4,  // unknown format or damaged
    exitTooLarge = 5,
    exitNoLibrary = 6,  // KOVRTCH32.dll or the system's imaging component cannot be loaded, no display
    exitCannotWrite = 7,
};

// Sentences go to where standard output and standard error lead, or to the terminal that the program was started from.
// Where there is neither, as after a double click, they appear in message boxes.
void reportToTerminal();
// From now on they appear in the program's window, and complaints in message boxes over it.
void reportInWindow();

void tell(const std::wstring& sentence);
void mention(const std::wstring& sentence);  // what goes on, and what the user knows: never in a box
void complain(const std::wstring& sentence);

// A question in a box, in the user's language.
bool ask(const std::wstring& question, bool yesIsUsual);

// The system's own words for an error code, e.g. "Access denied."
std::wstring systemErrorText(unsigned long error);
