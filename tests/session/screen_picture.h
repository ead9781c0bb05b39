// A picture of the whole screen, for a look after a failure.
#pragma once

#include <string>

// Writes the screen as a 24-bit bitmap file. False when it cannot.
bool writeScreen(const std::string& path);
