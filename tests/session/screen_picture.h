// A picture of the whole screen, for a look after a failure.
#pragma once

#include <windows.h>

#include <string>

// Writes a part of the screen, or all of it, as a 24-bit bitmap file. False when it cannot.
bool writeScreenPart(const std::string& path, const RECT& part);
bool writeScreen(const std::string& path);

// Saves the screen to <directory of the test program>/failures/<test>-<n>.bmp and prints the path.
void savePicture(const char* reason);
