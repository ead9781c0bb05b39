// Photo files: reading them into the editor's bitmap, writing the edited picture, looking whether what was
// written is what was meant.
#pragma once

#include "host/codecs/photo_codec.h"
#include "host/codecs/system_file.h"
#include "host/file_names.h"

enum class PhotoKind { Jpeg, Png, Tiff, Webp, Other };

// The photo in the editor, as far as its file matters.
struct SourcePhoto {
    std::wstring path;
    PhotoKind kind = PhotoKind::Other;
    PhotoFacts facts;
};

// Decodes the photo, upright, over white, its colours as sRGB, into a packed bitmap in a movable block that the
// caller frees. biXPelsPerMeter and biYPelsPerMeter hold the file's resolution. *image is null on failure.
PhotoStatus readPhoto(const std::wstring& path, HGLOBAL* image, SourcePhoto* source);

// Writes the packed bitmap into the file at path, which exists and is empty, band by band. Where source (may be
// null) is of the same format, everything in it is kept that was not edited, else what the format can take.
PhotoStatus writePhoto(const std::wstring& path, PhotoFormat format, HGLOBAL image, const SourcePhoto* source);

// Opens the written file again and compares it with the picture, to its last row: the same pixels, or after a
// lossy step ones near to them.
bool verifyPhoto(const std::wstring& path, PhotoFormat format, HGLOBAL image, const SourcePhoto* source);
