#include "host/codecs/jpeg_file.h"
#include "host/codecs/jpeg_rows.h"
#include "host/codecs/jpeg_segments.h"

#include <algorithm>
#include <cmath>

constexpr int BAND_ROWS = 64;

static long pelsPerMetre(const jpeg_decompress_struct& input, int density)
{
    if (input.density_unit == 1) return std::lround(density / 0.0254);
    return input.density_unit == 2 ? density * 100l : 0;
}

struct Reading {
    JpegRows rows;
    std::vector<uint8_t> band;
};

static PhotoStatus readRows(Reading* reading, const RowSink& sink, PhotoFacts* facts)
{
    JpegErrors errors;
    jpeg_decompress_struct& input = reading->rows.input;
    input.err = watchJpeg(&errors);
    if (setjmp(errors.jump)) return errors.status;
    jpeg_read_header(&input, TRUE);
    collectJpegFacts(input, facts);
    const int width = (int)input.image_width, height = (int)input.image_height;
    const PhotoStatus status =
        sink.begin(sink.context, {width, height, facts->orientation, pelsPerMetre(input, input.X_density),
                                  pelsPerMetre(input, input.Y_density)});
    if (status != PhotoStatus::Ok) return status;
    reading->rows.bridge = openBridge(facts->profile, facts->inks ? 4 : 0, jpegInksAreInverted(input));
    startJpegRows(&reading->rows);
    const size_t stride = (size_t)width * 4;
    reading->band.resize(stride * BAND_ROWS);
    for (int row = 0; row < height;) {
        const int count = readJpegRows(&reading->rows, reading->band.data(), stride, std::min(BAND_ROWS, height - row));
        if (errors.damaged) return PhotoStatus::NotAPhoto;
        if (!sink.take(sink.context, reading->band.data(), (ptrdiff_t)stride, row, count))
            return PhotoStatus::NotAPhoto;
        row += count;
    }
    jpeg_finish_decompress(&input);
    return errors.damaged ? PhotoStatus::NotAPhoto : PhotoStatus::Ok;
}

PhotoStatus readJpeg(FILE* file, const RowSink& sink, PhotoFacts* facts)
{
    Reading reading = {};
    JpegErrors errors;
    reading.rows.input.err = watchJpeg(&errors);
    if (setjmp(errors.jump)) return errors.status;
    jpeg_create_decompress(&reading.rows.input);
    jpeg_stdio_src(&reading.rows.input, file);
    saveJpegSegments(&reading.rows.input);
    const PhotoStatus status = readRows(&reading, sink, facts);
    jpeg_destroy_decompress(&reading.rows.input);
    closeBridge(&reading.rows.bridge);
    return status;
}
