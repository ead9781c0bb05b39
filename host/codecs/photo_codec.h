// What the readers and writers of the photo formats share. Each reader hands the picture over in bands of
// rows as the file has them; each writer takes the edited picture and the original file, and writes a file in
// which everything is kept that was not edited.
#pragma once

#include "host/photo/photo_rows.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

enum class PhotoStatus {
    Ok,
    Missing,     // no such file
    Unreadable,  // a folder, or access is denied
    NotAPhoto,   // unknown format, empty or damaged
    TooLarge,    // more pixels than fit into memory
    CannotEncode,
    CannotWrite,  // the disk is full, or gone; GetLastError tells
    NoImaging,    // the system's imaging component is not there
};

// Memory for a whole picture: null when there is not so much, where a vector would end the program.
struct FreeBytes {
    void operator()(uint8_t* bytes) const { free(bytes); }
};
using LargeBytes = std::unique_ptr<uint8_t, FreeBytes>;
LargeBytes allocateLarge(uint64_t size);

// What of a photo a writer may lose or must know; filled in by the readers.
struct PhotoFacts {
    bool alpha = false;     // it has transparent parts, or a channel for them
    bool grey = false;      // stored without colour
    bool deep = false;      // more than 8 bits a channel
    bool palette = false;   // stored as indices into a table of colours
    bool inks = false;      // CMYK or YCCK
    bool animated = false;  // further frames
    bool notes = false;     // comments and captions that only its own kind of file can take
    bool camera = false;    // camera data in parts of a TIFF file
    bool uneven = false;    // a JPEG file that ends inside a block: it cannot be turned as it is
    bool inPlace = false;   // a TIFF or bitmap file whose pixels can be changed with everything else left as it is
    int pages = 1;
    int orientation = 1;
    std::vector<uint8_t> profile;  // ICC
    std::vector<uint8_t> exif;     // from its byte order mark on
    std::vector<uint8_t> xmp;      // the packet
};

struct PhotoShape {
    int width, height;  // as the file has it
    int orientation;    // 1 to 8
    long across, down;  // resolution in pixels a metre, 0: not told
};

// Takes a photo's rows. begin is called once, then take for every band from the top on. bgra: blue, green,
// red and straight alpha bytes.
struct RowSink {
    void* context;
    PhotoStatus (*begin)(void* context, const PhotoShape& shape);
    bool (*take)(void* context, const uint8_t* bgra, ptrdiff_t stride, int firstRow, int rowCount);
};

// The edited picture, upright, in the bitmap that the editor had.
struct EditedPhoto {
    const uint8_t* bits;
    int width, height;
    long across, down;  // pixels a metre, 0: not told
    std::atomic<int>* rowsGathered = nullptr;
};

// The edited picture as it would lie in a file of that orientation.
UprightTarget editedInFile(const EditedPhoto& photo, int orientation);
