// Camera data changed in place, and where a GIF file's picture lies.
#include "host/photo/exif_edit.h"
#include "host/photo/gif_canvas.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

// Little-endian: orientation 6 and the camera's directory (size 4 x 3), then a preview of 8 bytes.
static std::vector<uint8_t> cameraData()
{
    std::vector<uint8_t> bytes = {'I', 'I', 42, 0, 8, 0, 0, 0};
    auto add = [&](std::initializer_list<int> words) {
        for (int word : words) {
            bytes.push_back((uint8_t)word);
            bytes.push_back((uint8_t)(word >> 8));
        }
    };
    add({2, 274, 3, 1, 0, 6, 0, 0x8769, 4, 1, 0, 38, 0, 68, 0});          // 8 .. 38, next at 68
    add({2, 0xA002, 4, 1, 0, 4, 0, 0xA003, 3, 1, 0, 3, 0, 0, 0});         // 38 .. 68
    add({2, 0x201, 4, 1, 0, 98, 0, 0x202, 4, 1, 0, 8, 0, 0, 0});          // 68 .. 98
    bytes.insert(bytes.end(), {'o', 'l', 'd', 'f', 'a', 'c', 'e', '!'});  // 98 .. 106
    return bytes;
}

TEST(HostMetadata, NotesAnUprightPhotoAndItsSize)
{
    std::vector<uint8_t> data = cameraData();
    EXPECT_EQ(exifOrientation(data.data(), data.size()), 6);
    noteUprightSize(data.data(), data.size(), 70000, 4);
    EXPECT_EQ(exifOrientation(data.data(), data.size()), 1);
    EXPECT_EQ(data[48] | data[49] << 8 | data[50] << 16, 70000);
    EXPECT_EQ(data[60], 4);
}

TEST(HostMetadata, ThePreviewIsReplacedAndNothingOfTheOldOneIsLeft)
{
    std::vector<uint8_t> data = cameraData();
    const ExifThumbnail old = findThumbnail(data.data(), data.size());
    EXPECT_EQ(old.at, 98u);
    EXPECT_EQ(old.size, 8u);
    const uint8_t fresh[] = {'n', 'e', 'w'};
    replaceThumbnail(data.data(), data.size(), fresh, 3);
    EXPECT_EQ(findThumbnail(data.data(), data.size()).size, 3u);
    EXPECT_EQ(memcmp(&data[98], "new\0\0\0\0\0", 8), 0);
}

TEST(HostMetadata, APreviewThatDoesNotFitIsTakenOut)
{
    std::vector<uint8_t> data = cameraData();
    const std::vector<uint8_t> large(9, 'x');
    replaceThumbnail(data.data(), data.size(), large.data(), large.size());
    EXPECT_EQ(findThumbnail(data.data(), data.size()).size, 0u);
    EXPECT_EQ(std::count(data.begin() + 98, data.end(), 0), 8);
}

// Cut anywhere and with any byte changed: nothing outside is touched (the sanitizers tell).
TEST(HostMetadata, DamagedCameraDataIsHarmless)
{
    const std::vector<uint8_t> whole = cameraData();
    const uint8_t fresh[] = {1, 2, 3};
    for (size_t size = 0; size <= whole.size(); ++size)
        for (size_t at = 0; at < size; ++at)
            for (int value : {0, 1, 0x7F, 0xFF}) {
                std::vector<uint8_t> data(whole.begin(), whole.begin() + (ptrdiff_t)size);
                data[at] = (uint8_t)value;
                noteUprightSize(data.data(), data.size(), 1, 1);
                replaceThumbnail(data.data(), data.size(), fresh, sizeof fresh);
                const int orientation = exifOrientation(data.data(), data.size());
                EXPECT_TRUE(orientation >= 1 && orientation <= 8);
            }
}

TEST(HostMetadata, TheOrientationInXmpBecomesOne)
{
    std::string text = "<x tiff:Orientation=\"6\"/><tiff:Orientation>8</tiff:Orientation> tiff:OrientationX";
    noteUprightInXmp((uint8_t*)&text[0], text.size());
    EXPECT_EQ(text, "<x tiff:Orientation=\"1\"/><tiff:Orientation>1</tiff:Orientation> tiff:OrientationX");
}

TEST(HostMetadata, OnlyPreviewsLeaveTheImageResources)
{
    auto resource = [](int kind, const std::string& data) {
        std::string bytes =
            std::string("8BIM") + (char)(kind >> 8) + (char)kind + std::string(5, '\0') + (char)data.size();
        return bytes + data + (data.size() % 2 ? std::string(1, '\0') : "");
    };
    const std::string head("Photoshop 3.0\0", 14);
    const std::string all = head + resource(0x404, "iptc") + resource(0x40C, "old") + resource(0x3ED, "resolution");
    std::vector<uint8_t> segment(all.begin(), all.end());
    dropResourceThumbnails(&segment);
    const std::string kept = head + resource(0x404, "iptc") + resource(0x3ED, "resolution");
    EXPECT_EQ(std::string(segment.begin(), segment.end()), kept);
}

TEST(HostMetadata, AGifPictureLiesOnItsCanvas)
{
    // 40 x 30, two colours, one extension, the picture 10 x 8 at 5, 6.
    const uint8_t file[] = {'G',  'I',  'F', '8', '9', 'a', 40, 0, 30,   0, 0x80, 0, 0, 1,  2, 3, 4, 5, 6,
                            0x21, 0xF9, 4,   0,   0,   0,   0,  0, 0x2C, 5, 0,    6, 0, 10, 0, 8, 0, 0};
    const GifCanvas canvas = gifCanvas(file, sizeof file, 10, 8);
    EXPECT_EQ(canvas.width, 40);
    EXPECT_EQ(canvas.height, 30);
    EXPECT_EQ(canvas.left, 5);
    EXPECT_EQ(canvas.top, 6);
    for (size_t size = 0; size < sizeof file; ++size) {
        const std::vector<uint8_t> cut(file, file + size);
        EXPECT_EQ(gifCanvas(cut.data(), cut.size(), 10, 8).width, 10);
    }
    EXPECT_EQ(gifCanvas(file, sizeof file, 36, 8).width, 36);  // would not lie inside
}
