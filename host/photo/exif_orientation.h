// The orientation a camera noted in a JPEG or TIFF file. Returned as 1 to 8; 1 when nothing sound is noted.
// Nothing is ever read outside the bytes that are given.
#pragma once

#include <cstddef>
#include <cstdint>

// bytes: the start of the file, as much of it as holds the metadata.
int jpegOrientation(const uint8_t* bytes, size_t size);

constexpr size_t TIFF_HEAD_SIZE = 8;

// Where the first directory of a TIFF file lies, which may be far behind its start; 0 when `head`, the file's
// first TIFF_HEAD_SIZE bytes, is not a TIFF file's.
uint32_t tiffDirectoryPlace(const uint8_t* head);

// bytes: the file from that place on, as much of it as the directory may take.
int tiffOrientation(const uint8_t* head, const uint8_t* bytes, size_t size);
