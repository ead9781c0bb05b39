#include "host/codecs/jpeg_rows.h"

bool jpegInksAreInverted(const jpeg_decompress_struct& input)
{
    return input.saw_Adobe_marker;
}

void startJpegRows(JpegRows* rows)
{
    jpeg_decompress_struct& input = rows->input;
    const bool inks = input.num_components == 4;
    rows->inverted = jpegInksAreInverted(input);
    input.out_color_space = inks ? JCS_CMYK : JCS_EXT_BGRA;
    jpeg_start_decompress(&input);
    if (inks) rows->inks.resize((size_t)input.output_width * 4);
}

int readJpegRows(JpegRows* rows, uint8_t* bgra, size_t stride, int count)
{
    const int width = (int)rows->input.output_width;
    for (int row = 0; row < count; ++row, bgra += stride) {
        JSAMPROW line = rows->inks.empty() ? bgra : rows->inks.data();
        if (jpeg_read_scanlines(&rows->input, &line, 1) != 1) return row;
        if (rows->inks.empty())
            showColors(rows->bridge, bgra, width);
        else
            showInks(rows->bridge, line, rows->inverted, bgra, width);
    }
    return count;
}
