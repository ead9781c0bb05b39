// The orientation a camera noted in a JPEG file.
#pragma once

#include <cstddef>
#include <cstdint>

// bytes: the start of the file, as much of it as holds the metadata. Returns 1 to 8; 1 when nothing
// sound is noted. Never reads outside the bytes.
int jpegOrientation(const uint8_t* bytes, size_t size);
