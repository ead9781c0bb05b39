// Photo files: reading them into the editor's bitmap, writing the edited picture, looking whether what was
// written is what was meant.
#pragma once

#include "host/codecs/photo_codec.h"
#include "host/codecs/system_file.h"
#include "host/file_names.h"

#include <windows.h>

enum class PhotoKind { Jpeg, Png, Tiff, Webp, Bmp, Other };

// The photo in the editor, as far as its file matters.
struct SourcePhoto {
    std::wstring path;
    PhotoKind kind = PhotoKind::Other;
    PhotoFacts facts;
};

// How far a file is, for another thread to see. In rows of the picture, each counted once for every pass over it.
struct Progress {
    std::atomic<int> rows{0};
    std::atomic<int> allRows{0};    // about; 0 before it is known
    std::atomic<bool> stop{false};  // set from outside: reading gives up
};

// Decodes the photo, upright, over white, its colours as sRGB, into a packed bitmap in a movable block that the
// caller frees. biXPelsPerMeter and biYPelsPerMeter hold the file's resolution. *image is null on failure.
PhotoStatus readPhoto(const std::wstring& path, HGLOBAL* image, SourcePhoto* source, Progress* progress = nullptr);

// Writes the packed bitmap into the file at path, which exists and is empty, band by band. Where source (may be
// null) is of the same format, everything in it is kept that was not edited, else what the format can take.
PhotoStatus writePhoto(const std::wstring& path, PhotoFormat format, HGLOBAL image, const SourcePhoto* source,
                       Progress* progress = nullptr);

// Opens the written file again and compares it with the picture, to its last row: the same pixels, or after a
// lossy step ones near to them.
// *written gets what the file has, of formats that have more than pixels.
bool verifyPhoto(const std::wstring& path, PhotoFormat format, HGLOBAL image, const SourcePhoto* source,
                 Progress* progress = nullptr, PhotoFacts* written = nullptr);
