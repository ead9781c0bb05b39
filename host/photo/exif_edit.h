// Changes in place of a block of camera data (EXIF, from its byte order mark on), so that everything else in
// it, the maker's own part included, stays where it is. Nothing is touched outside of the bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// Notes that the picture is upright and what size it has.
void noteUprightSize(uint8_t* exif, size_t size, uint32_t width, uint32_t height);

// Where the small preview picture lies; size 0 when there is none as a JPEG.
struct ExifThumbnail {
    size_t at = 0, size = 0;
};
ExifThumbnail findThumbnail(const uint8_t* exif, size_t size);

// Puts another preview in place of the old one, which is as long at least; with none (length 0) the preview is
// taken out. What is left of the old one is cleared.
void replaceThumbnail(uint8_t* exif, size_t size, const uint8_t* thumbnail, size_t length);

// The orientation that is noted, 1 to 8.
int exifOrientation(const uint8_t* exif, size_t size);

// An XMP packet's note of the orientation, too, becomes 1.
void noteUprightInXmp(uint8_t* xmp, size_t size);

// Takes the preview pictures out of a segment of image resources (from "Photoshop 3.0" on).
void dropResourceThumbnails(std::vector<uint8_t>* segment);
