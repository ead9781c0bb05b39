// Photos in memory, for fuzzing the host's decoders.
#pragma once

#include <cstdint>
#include <tiffio.h>
#include <vector>

typedef std::vector<uint8_t> Bytes;

struct PhotoMemory {
    Bytes bytes;
    uint64_t at;
};

// Closed by TIFFClose; memory must live as long. mode as for TIFFOpen.
TIFF* openTiffInMemory(PhotoMemory* memory, const char* mode);

// How many photos the readers have accepted so far.
int photosAccepted();

// Sound photos, a few of each kind that matters.
std::vector<Bytes> jpegPhotos();
std::vector<Bytes> pngPhotos();
std::vector<Bytes> tiffPhotos();
std::vector<Bytes> webpPhotos();
std::vector<Bytes> bitmapPhotos();
