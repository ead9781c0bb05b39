// write_samples DIRECTORY: writes selection files of several sizes with the library's writer, and beside
// each what it holds: NAME.pixels and NAME.thumbnail (red, green, blue), NAME.mask (a byte a pixel, 255
// outside, 0 inside), rows from the top.
#include <cstdio>
#include <string>

#include "tests/reference/memory_file.h"
#include "tests/reference/tiff_reference.h"

static bool save(const std::string& path, const std::vector<uint8_t>& bytes)
{
    FILE* file = fopen(path.c_str(), "wb");
    if (!file) return false;
    const bool written = fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return fclose(file) == 0 && written;
}

static void fill(MemoryImage& to, const reference::Picture& from)
{
    to.rows = storedRows(from, 0);
    to.view.row0 = to.rows.data() - to.view.stride * (from.height - 1);
}

static bool writeSample(const std::string& directory, int width, int height)
{
    ReferenceSelection selection = randomSelection((unsigned)width, width, height);
    selection.imageXPelsPerMetre = selection.imageYPelsPerMetre = 11811;
    MemoryImage image(width, height), mask(width, height);
    fill(image, selection.image);
    fill(mask, selection.mask);
    MemoryFile file;
    if (!writeSelectionImages(file.sink(), {image.view, mask.view, {11811, 11811}, {0, 0}})) return false;

    std::vector<uint8_t> pixels, outside;
    for (const reference::Pixel& p : selection.image.pixels)
        pixels.insert(pixels.end(), {(uint8_t)p.red, (uint8_t)p.green, (uint8_t)p.blue});
    for (const reference::Pixel& p : selection.mask.pixels)
        outside.push_back(p.red ? 255 : 0);
    const std::string name = directory + "/" + std::to_string(width) + "x" + std::to_string(height);
    return save(name + ".tif", file.bytes) && save(name + ".pixels", pixels) && save(name + ".mask", outside) &&
           save(name + ".thumbnail", referenceThumbnail(selection));
}

int main(int count, char** arguments)
{
    if (count != 2) return 2;
    const int sizes[][2] = {{1, 1}, {17, 9}, {100, 10}, {10, 100}, {640, 480}, {3000, 2000}};
    for (const auto& size : sizes) {
        if (!writeSample(arguments[1], size[0], size[1])) return 1;
    }
    return 0;
}
