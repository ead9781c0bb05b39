#include "text/kernels/text_stamp.h"

static uint8_t mixed(uint8_t under, uint8_t over, int opacity)
{
    return (uint8_t)((under * (100 - opacity) + over * opacity) / 100);
}

static void stampRow(uint8_t* pixel, const uint8_t* text, int width, Rgb colour, int opacity)
{
    for (int x = 0; x < width; ++x, pixel += 3, text += 3) {
        if (!(text[0] | text[1] | text[2])) continue;
        pixel[0] = mixed(pixel[0], colour.blue, opacity);
        pixel[1] = mixed(pixel[1], colour.green, opacity);
        pixel[2] = mixed(pixel[2], colour.red, opacity);
    }
}

void stampText(BitsView image, BitsView strip, int originY, Rgb colour, int opacity)
{
    const int64_t room = (int64_t)image.height - 1 - originY;
    const int rows = (int)(room < strip.height ? room : strip.height);
    const int width = image.width < strip.width ? image.width : strip.width;
    for (int row = originY < 0 ? -originY : 0; row < rows; ++row) {
        stampRow(rowOf(image, originY + row), rowOf(strip, row), width, colour, opacity);
    }
}
