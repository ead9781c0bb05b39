#include "host/codecs/thumbnail.h"

#include "host/codecs/jpeg_errors.h"
#include "host/photo/exif_edit.h"

#include <algorithm>
#include <cstdlib>

constexpr int LONGER_SIDE = 160;

struct Thumbnail {
    int width, height;
    std::vector<uint8_t> bgr;
};

// Means of the pixels that fall together.
static Thumbnail shrink(const EditedPhoto& photo)
{
    const int longest = std::max({photo.width, photo.height, LONGER_SIDE});
    Thumbnail small;
    small.width = std::max((int)((int64_t)photo.width * LONGER_SIDE / longest), 1);
    small.height = std::max((int)((int64_t)photo.height * LONGER_SIDE / longest), 1);
    small.bgr.resize((size_t)small.width * small.height * 3);
    const size_t stride = packedRowSize(photo.width);
    for (int y = 0; y < small.height; ++y)
        for (int x = 0; x < small.width; ++x) {
            const int left = (int)((int64_t)x * photo.width / small.width);
            const int right = std::max((int)((int64_t)(x + 1) * photo.width / small.width), left + 1);
            const int top = (int)((int64_t)y * photo.height / small.height);
            const int bottom = std::max((int)((int64_t)(y + 1) * photo.height / small.height), top + 1);
            uint64_t sums[3] = {};
            for (int row = top; row < bottom; ++row) {
                const uint8_t* pixel = photo.bits + (photo.height - 1 - row) * stride + (size_t)left * 3;
                for (int column = left; column < right; ++column, pixel += 3)
                    for (int channel = 0; channel < 3; ++channel)
                        sums[channel] += pixel[channel];
            }
            const uint64_t count = (uint64_t)(right - left) * (bottom - top);
            for (int channel = 0; channel < 3; ++channel)
                small.bgr[((size_t)y * small.width + x) * 3 + channel] = (uint8_t)(sums[channel] / count);
        }
    return small;
}

// The bytes are malloc's; null when it fails.
static unsigned char* encode(const Thumbnail& small, int quality, unsigned long* size)
{
    unsigned char* bytes = nullptr;
    jpeg_compress_struct output;
    JpegErrors errors;
    output.err = watchJpeg(&errors);
    if (setjmp(errors.jump)) {
        jpeg_destroy_compress(&output);
        free(bytes);
        return nullptr;
    }
    jpeg_create_compress(&output);
    jpeg_mem_dest(&output, &bytes, size);
    output.image_width = (JDIMENSION)small.width;
    output.image_height = (JDIMENSION)small.height;
    output.input_components = 3;
    output.in_color_space = JCS_EXT_BGR;
    jpeg_set_defaults(&output);
    jpeg_set_quality(&output, quality, TRUE);
    output.write_JFIF_header = FALSE;
    jpeg_start_compress(&output, TRUE);
    while (output.next_scanline < output.image_height) {
        JSAMPROW row = const_cast<uint8_t*>(&small.bgr[(size_t)output.next_scanline * small.width * 3]);
        jpeg_write_scanlines(&output, &row, 1);
    }
    jpeg_finish_compress(&output);
    jpeg_destroy_compress(&output);
    return bytes;
}

void refreshExif(uint8_t* exif, size_t size, const EditedPhoto& photo)
{
    const ExifThumbnail old = findThumbnail(exif, size);
    noteUprightSize(exif, size, (uint32_t)photo.width, (uint32_t)photo.height);
    unsigned char* bytes = nullptr;
    unsigned long length = 0;
    if (old.size) {
        // It has to fit into the old one's place, so that nothing else moves.
        const Thumbnail small = shrink(photo);
        for (int quality = 85; quality >= 15; quality -= 10) {
            free(bytes);
            bytes = encode(small, quality, &length);
            if (bytes && length <= old.size) break;
        }
    }
    replaceThumbnail(exif, size, bytes, bytes ? length : 0);
    free(bytes);
}
