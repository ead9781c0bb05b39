// Getting a photo into memory, and what is said when that cannot be done.
#pragma once

#include "host/report.h"
#include "host/photo_file.h"

#include <vector>

// Reads the photo while the window shows how far it is. What is wrong with it has been told when the result is not
// exitSaved; then *image is null.
ExitCode openPhoto(const std::wstring& path, HGLOBAL* image, SourcePhoto* source);

ExitCode complainAbout(PhotoStatus status, const std::wstring& path);

// With the system's dialog; empty when the user cancels.
std::vector<std::wstring> askForPhotos();
