// A damaged file can bring a decoder to its end in a way that a program should not go on from. Then this program ends
// with a right word, and a new one goes on with the photos that still wait.
#pragma once

#include "host/report.h"

// options: of the successor, each behind a blank. always: also where no photo waits, because the window is to stay.
void nameSuccessor(const std::wstring& options, bool always);

// Hides the window, starts the successor, where there is to be one, and ends when it has ended.
[[noreturn]] void endWithSuccessor(ExitCode code);
