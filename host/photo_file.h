// Reading and encoding photo files with the system's imaging component.
#pragma once

#include "host/file_names.h"

#include <windows.h>

enum class PhotoStatus {
    Ok,
    Missing,     // no such file
    Unreadable,  // a folder, or access is denied
    NotAPhoto,   // unknown format, empty or damaged
    TooLarge,    // more pixels than fit into memory
    CannotEncode,
    NoImaging,  // the system's imaging component is not there
};

// Once per thread before, and after, the two below. False when the component cannot be had.
bool startImaging();
void stopImaging();

// Decodes the photo, upright, over white, into a packed bitmap in a movable block that the caller
// frees. biXPelsPerMeter and biYPelsPerMeter hold the file's resolution. *image is null on failure.
PhotoStatus readPhoto(const wchar_t* path, HGLOBAL* image);

// Encodes the packed bitmap as a whole file into a movable block that the caller frees; *size gets the
// file's length. The resolution is taken from the bitmap; colour profile and camera data from the photo
// at original (may be null), as far as they can be read and the format takes them; else they are left out.
PhotoStatus encodePhoto(HGLOBAL image, PhotoFormat format, const wchar_t* original, HGLOBAL* file, size_t* size);
