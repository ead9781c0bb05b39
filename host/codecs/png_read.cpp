#include "host/codecs/png_file.h"
#include "host/codecs/png_rows.h"

#include <algorithm>

constexpr int BAND_ROWS = 32;

static PhotoStatus faultOf(const PngRows& rows)
{
    return rows.noMemory ? PhotoStatus::TooLarge : PhotoStatus::NotAPhoto;
}

static PhotoStatus handRows(PngRows* rows, const RowSink& sink)
{
    const size_t stride = (size_t)rows->width * 4;
    const int most = (int)std::max<size_t>(1, std::min<size_t>(BAND_ROWS, (16u << 20) / stride));
    std::vector<uint8_t> band(stride * most), buffer;
    for (int row = 0; row < rows->height; row += most) {
        const int count = std::min(most, rows->height - row);
        for (int i = 0; i < count; ++i) {
            const uint8_t* native = nextPngRow(rows, &buffer);
            if (!native) return faultOf(*rows);
            showPngRow(*rows, native, band.data() + i * stride);
        }
        if (!sink.take(sink.context, band.data(), (ptrdiff_t)stride, row, count)) return PhotoStatus::NotAPhoto;
    }
    return PhotoStatus::Ok;
}

static PhotoShape shapeOf(const PngRows& rows, const PhotoFacts& facts)
{
    PhotoShape shape = {rows.width, rows.height, facts.orientation, 0, 0};
    png_uint_32 across, down;
    int unit;
    if (png_get_pHYs(rows.input, rows.info, &across, &down, &unit) && unit == PNG_RESOLUTION_METER) {
        shape.across = (long)across;
        shape.down = (long)down;
    }
    return shape;
}

// The size in the file's head, before anything is allocated for it.
static bool headSize(FILE* file, uint32_t size[2])
{
    uint8_t head[24];
    if (fread(head, 1, sizeof head, file) != sizeof head || fseek(file, 0, SEEK_SET) != 0) return false;
    for (int i = 0; i < 2; ++i)
        size[i] = (uint32_t)head[16 + 4 * i] << 24 | head[17 + 4 * i] << 16 | head[18 + 4 * i] << 8 | head[19 + 4 * i];
    return true;
}

PhotoStatus readPng(FILE* file, const RowSink& sink, PhotoFacts* facts)
{
    uint32_t size[2];
    if (!headSize(file, size) || size[0] == 0 || size[1] == 0) return PhotoStatus::NotAPhoto;
    if (!packedPhotoSize(size[0], size[1])) return PhotoStatus::TooLarge;
    PngRows rows;
    PhotoStatus status = openPng(&rows, file, facts) ? PhotoStatus::Ok : faultOf(rows);
    if (status == PhotoStatus::Ok) status = sink.begin(sink.context, shapeOf(rows, *facts));
    if (status == PhotoStatus::Ok && !startPngRows(&rows, false)) status = faultOf(rows);
    if (status == PhotoStatus::Ok) status = handRows(&rows, sink);
    closePngRows(&rows);
    return status;
}
