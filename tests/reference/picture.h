// The pictures that all references speak of: plain pixels counted from the top, and the same as they are stored.
// Shares no code with the library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace reference {

struct Pixel {
    int blue, green, red;  // 0 to 255
};

bool operator==(const Pixel& a, const Pixel& b);
bool operator!=(const Pixel& a, const Pixel& b);

struct Picture {
    int width = 0, height = 0;
    std::vector<Pixel> pixels;  // top row first

    Picture() = default;
    Picture(int w, int h, Pixel fill = {0, 0, 0}) : width(w), height(h), pixels((size_t)w * (size_t)h, fill) {}

    // Outside the picture the test program ends.
    Pixel& at(int x, int y) { return pixels.at((size_t)y * (size_t)width + (size_t)x); }
    const Pixel& at(int x, int y) const { return pixels.at((size_t)y * (size_t)width + (size_t)x); }
};

// Rows as they are stored: the bottom row first, blue, green, red, each row padded to 4 bytes.
struct StoredPicture {
    int width, height;
    std::vector<uint8_t> bytes;
};

int strideOf(int width);

StoredPicture stored(const Picture& picture, uint8_t padding = 0);
Picture shown(const StoredPicture& rows);

// The same without the size.
std::vector<uint8_t> storedRows(const Picture& picture, uint8_t padding);
Picture fromStoredRows(const uint8_t* rows, int width, int height);

}  // namespace reference
