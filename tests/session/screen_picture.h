// A picture of the whole screen, for a look after a failure.
#pragma once

#include <string>

// Writes the screen as a 24-bit bitmap file. False when it cannot.
bool writeScreen(const std::string& path);

// Saves the screen to <directory of the test program>/failures/<test>-<n>.bmp and prints the path.
void savePicture(const char* reason);
