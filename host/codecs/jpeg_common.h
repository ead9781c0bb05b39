// What reading and writing JPEG files share.
#pragma once

#include "host/codecs/color_bridge.h"
#include "host/codecs/photo_codec.h"

#include <csetjmp>
// The library's own header needs the two above.
#include <jpeglib.h>

// The library reports by a jump. Functions that call setjmp hold no objects with destructors.
struct JpegErrors {
    jpeg_error_mgr base;
    jmp_buf jump;
    PhotoStatus status;
    bool damaged;  // something of the picture is missing or wrong
};

// Fills it in and gives what the library's object wants.
jpeg_error_mgr* watchJpeg(JpegErrors* errors);

// Adobe's programs store inks as paper brightness, as most readers expect of everybody.
bool jpegInksAreInverted(const jpeg_decompress_struct& input);

// The kind of a saved segment, beyond its number.
enum class JpegSegment { Other, Jfif, Extension, Exif, Xmp, Icc, MultiPicture, Resources, Adobe };
JpegSegment kindOfSegment(const jpeg_marker_struct* segment);

constexpr int EXIF_MARK_SIZE = 6;  // "Exif" and two zeros
constexpr int XMP_MARK_SIZE = 29;  // the name of its vocabulary and a zero
constexpr int ICC_MARK_SIZE = 14;  // "ICC_PROFILE", a zero, number and count of parts

// Copies what segments that were saved by jpeg_save_markers tell.
void collectJpegFacts(const jpeg_decompress_struct& input, PhotoFacts* facts);

// Has the segments saved whose kinds are told above, and the comments.
void saveJpegSegments(jpeg_decompress_struct* input);

// A JPEG file opened for its rows, upper first, blue, green, red and alpha (255).
struct JpegRows {
    jpeg_decompress_struct input;
    ColorBridge bridge;
    std::vector<uint8_t> inks;  // a row as the file has it, for CMYK only
    bool inverted;
};

// After jpeg_read_header. Jumps on errors, so it must be called below a setjmp.
void startJpegRows(JpegRows* rows);

// Reads up to count rows; gives how many.
int readJpegRows(JpegRows* rows, uint8_t* bgra, size_t stride, int count);

// Writes the saved segments with what they say about size, turn and preview brought up to date.
void copyJpegSegments(const jpeg_decompress_struct& input, jpeg_compress_struct* output, const EditedPhoto& photo);

// The segments for camera data and profile that came from a file of another format.
void writeJpegFacts(jpeg_compress_struct* output, const PhotoFacts& facts, const EditedPhoto& photo);
