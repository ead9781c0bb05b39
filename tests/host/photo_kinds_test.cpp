// What is particular to one kind of photo file.
#include "host/losses.h"
#include "host/photo/photo_rows.h"
#include "tests/host/test_folder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>

struct HostPhotoKinds : testing::Test {
    TestFolder folder;
};

using Picture = std::function<int(int x, int y, int channel)>;

static HGLOBAL makePhoto(int width, int height, const Picture& value)
{
    HGLOBAL image = GlobalAlloc(GHND, packedPhotoSize(width, height));
    BITMAPINFOHEADER* header = (BITMAPINFOHEADER*)GlobalLock(image);
    *header = {sizeof *header, width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    uint8_t* bits = (uint8_t*)(header + 1);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (int channel = 0; channel < 3; ++channel)
                bits[(size_t)(height - 1 - y) * packedRowSize(width) + x * 3 + channel] = (uint8_t)value(x, y, channel);
    GlobalUnlock(image);
    return image;
}

static std::vector<uint8_t> written(const std::wstring& name, HGLOBAL image)
{
    writeBytes(name, {});
    EXPECT_EQ(writePhoto(name, formatOfName(name), image, nullptr), PhotoStatus::Ok);
    EXPECT_TRUE(verifyPhoto(name, formatOfName(name), image, nullptr));
    GlobalFree(image);
    return readBytes(name);
}

static int grain(int x, int y, int channel)
{
    uint32_t value = (uint32_t)(x + 1000 * y + 1000000 * channel) * 2654435761u;
    value = (value ^ value >> 15) * 2246822519u;
    return (int)((value ^ value >> 13) >> 28);
}

// How thoroughly the packer says that it has searched, 0 to 3.
static int thoroughness(const std::vector<uint8_t>& png)
{
    static const uint8_t mark[] = {'I', 'D', 'A', 'T'};
    const auto at = std::search(png.begin(), png.end(), std::begin(mark), std::end(mark));
    return png.end() - at > 6 ? at[5] >> 6 : -1;
}

// A drawing of small repeated tiles is nothing but repetitions, the grain of a photo has none.
TEST_F(HostPhotoKinds, APngFileIsSearchedForRepetitionsWhereThereAreAny)
{
    const Picture tiles = [](int x, int y, int channel) { return 16 * grain(x % 10, y % 10, channel); };
    const Picture sky = [](int x, int y, int channel) { return 60 + (x + y) / 4 + grain(x, y, channel); };
    const std::vector<uint8_t> drawing = written(folder.path + L"drawing.png", makePhoto(300, 200, tiles));
    EXPECT_GE(thoroughness(drawing), 1);
    EXPECT_LT(drawing.size(), 300u * 200 * 3 / 40);
    const std::vector<uint8_t> photo = written(folder.path + L"photo.png", makePhoto(300, 200, sky));
    EXPECT_EQ(thoroughness(photo), 0);
}

// Colours make a plain photo of a grey one; whether there were any is known when the file is there.
TEST_F(HostPhotoKinds, AGreyTiffFilesDepthAndPagesMayBeLostToColours)
{
    SourcePhoto source;
    source.kind = PhotoKind::Tiff;
    source.facts.inPlace = source.facts.grey = source.facts.deep = true;
    source.facts.pages = 2;
    EXPECT_TRUE(lossesOf(source, PhotoFormat::Tiff).severe);
    EXPECT_EQ(lossesOf(source, PhotoFormat::Tiff).names, (std::vector<TextId>{TEXT_LOSS_PAGES, TEXT_LOSS_DEPTH}));
    PhotoFacts written = source.facts;
    EXPECT_TRUE(lossesOf(source, PhotoFormat::Tiff, &written).names.empty());
    written.grey = false;
    EXPECT_TRUE(lossesOf(source, PhotoFormat::Tiff, &written).severe);
    source.facts.deep = false;
    source.facts.pages = 1;
    EXPECT_TRUE(lossesOf(source, PhotoFormat::Tiff).names.empty());
}

// A bitmap file of 3 x 2 pixels from red, green, blue and alpha bytes, the upper row first, with a profile behind them.
static std::vector<uint8_t> richBitmap(const std::vector<uint8_t>& rgba, const std::vector<uint8_t>& profile)
{
    constexpr size_t headSize = 14;
    BITMAPV5HEADER info = {};
    info.bV5Size = sizeof info;
    info.bV5Width = 3;
    info.bV5Height = -2;
    info.bV5Planes = 1;
    info.bV5BitCount = 32;
    info.bV5Compression = BI_BITFIELDS;
    info.bV5RedMask = 0xFF;
    info.bV5GreenMask = 0xFF00;
    info.bV5BlueMask = 0xFF0000;
    info.bV5AlphaMask = 0xFF000000;
    info.bV5CSType = 0x4D424544;  // embedded
    info.bV5ProfileData = (DWORD)(sizeof info + rgba.size());
    info.bV5ProfileSize = (DWORD)profile.size();
    const uint8_t head[headSize] = {'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, headSize + sizeof info};
    std::vector<uint8_t> file(head, head + headSize);
    file.insert(file.end(), (uint8_t*)&info, (uint8_t*)&info + sizeof info);
    file.insert(file.end(), rgba.begin(), rgba.end());
    file.insert(file.end(), profile.begin(), profile.end());
    return file;
}

// All of it stays but the colours of edited pixels, which are seen on white.
TEST_F(HostPhotoKinds, ABitmapFileIsEditedInsideACopyOfIt)
{
    const std::vector<uint8_t> profile(10, 'p');
    std::vector<uint8_t> rgba = {10, 20, 30, 255, 40, 50, 60, 255, 70, 80, 90, 0,
                                 1,  2,  3,  128, 4,  5,  6,  255, 7,  8,  9,  200};
    const std::wstring name = folder.path + L"a.bmp", result = folder.path + L"b.bmp";
    writeBytes(name, richBitmap(rgba, profile));
    SourcePhoto source;
    HGLOBAL image = nullptr;
    ASSERT_EQ(readPhoto(name, &image, &source), PhotoStatus::Ok);
    EXPECT_TRUE(source.facts.alpha);
    EXPECT_EQ(source.facts.profile, profile);
    EXPECT_TRUE(lossesOf(source, PhotoFormat::Bmp).names.empty());
    EXPECT_TRUE(lossesOf(source, PhotoFormat::Jpeg).severe);

    // The editor's rows: the lower one first, 12 bytes each.
    uint8_t* bits = (uint8_t*)((BITMAPINFOHEADER*)GlobalLock(image) + 1);
    const std::vector<uint8_t> lower = {128, 128, 128, 6, 5, 4, 62, 61, 60},
                               upper = {30, 20, 10, 60, 50, 40, 255, 255, 255};
    for (int i = 0; i < 9; ++i) {
        EXPECT_NEAR(bits[i], lower[(size_t)i], 1) << i;
        EXPECT_EQ(bits[12 + i], upper[(size_t)i]) << i;
    }
    const uint8_t painted[] = {99, 98, 97};
    memcpy(bits + 12 + 3, painted, sizeof painted);
    std::reverse_copy(painted, painted + 3, rgba.begin() + 4);
    GlobalUnlock(image);
    writeBytes(result, {});
    EXPECT_EQ(writePhoto(result, PhotoFormat::Bmp, image, &source), PhotoStatus::Ok);
    EXPECT_TRUE(verifyPhoto(result, PhotoFormat::Bmp, image, &source));
    EXPECT_EQ(readBytes(result), richBitmap(rgba, profile));
    GlobalFree(image);
}

// A little-endian TIFF file of 16 bits: 3 x 2 pixels that must be turned clockwise, with an entry of somebody's own,
// and a grey page of one pixel behind. shared: that has its pixel where the first page's are.
static std::vector<uint8_t> turnedTiff(const std::vector<uint16_t>& samples, bool shared)
{
    std::vector<uint8_t> file = {'I', 'I', 42, 0};
    const auto put = [&](uint32_t value, int size) {
        for (int i = 0; i < size; ++i)
            file.push_back((uint8_t)(value >> 8 * i));
    };
    const auto putPage = [&](const std::vector<std::array<uint32_t, 3>>& entries, uint32_t next) {
        put((uint32_t)entries.size(), 2);
        for (const auto& entry : entries) {
            put(entry[0], 2);
            put(4, 2);
            put(entry[1], 4);
            put(entry[2], 4);
        }
        put(next, 4);
    };
    const uint32_t pixels = 8, depths = pixels + 36, first = depths + 12, second = first + 2 + 11 * 12 + 4;
    put(first, 4);
    for (uint16_t sample : samples)
        put(sample, 2);
    for (int i = 0; i < 3; ++i)
        put(16, 4);
    putPage({{256, 1, 3},
             {257, 1, 2},
             {258, 3, depths},
             {259, 1, 1},
             {262, 1, 2},
             {273, 1, pixels},
             {274, 1, 6},
             {277, 1, 3},
             {278, 1, 2},
             {279, 1, 36},
             {65000, 1, 0x12345678}},
            second);
    putPage({{256, 1, 1},
             {257, 1, 1},
             {258, 1, 8},
             {259, 1, 1},
             {262, 1, 1},
             {273, 1, shared ? pixels : depths},
             {277, 1, 1},
             {279, 1, 1}},
            0);
    return file;
}

static bool contains(const std::vector<uint8_t>& file, const void* bytes, size_t size)
{
    return std::search(file.begin(), file.end(), (const uint8_t*)bytes, (const uint8_t*)bytes + size) != file.end();
}

static void setPixel(HGLOBAL image, int x, int rowFromBottom, uint8_t value)
{
    BITMAPINFOHEADER* header = (BITMAPINFOHEADER*)GlobalLock(image);
    memset((uint8_t*)(header + 1) + rowFromBottom * (ptrdiff_t)packedRowSize(header->biWidth) + x * 3, value, 3);
    GlobalUnlock(image);
}

// What becomes of a TIFF file by an edit.
static std::vector<uint8_t> editedTiff(const TestFolder& folder, const std::vector<uint8_t>& file,
                                       const std::function<void(HGLOBAL)>& edit, PhotoFacts* written)
{
    const std::wstring name = folder.path + L"a.tif", result = folder.path + L"b.tif";
    SourcePhoto source;
    HGLOBAL image = nullptr;
    writeBytes(name, file);
    writeBytes(result, {});
    EXPECT_EQ(readPhoto(name, &image, &source), PhotoStatus::Ok);
    EXPECT_TRUE(lossesOf(source, PhotoFormat::Tiff).names.empty());
    edit(image);
    EXPECT_EQ(writePhoto(result, PhotoFormat::Tiff, image, &source), PhotoStatus::Ok);
    EXPECT_TRUE(verifyPhoto(result, PhotoFormat::Tiff, image, &source, nullptr, written));
    GlobalFree(image);
    return readBytes(result);
}

TEST_F(HostPhotoKinds, ATurnedTiffFileKeepsItsDepthAndAllElse)
{
    std::vector<uint16_t> samples(18), upright;
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = (uint16_t)(1000 + 3001 * i);
    // Clockwise: the upright photo's rows are the file's columns, from the bottom.
    for (size_t column = 0; column < 3; ++column)
        for (size_t row : {1u, 0u})
            for (size_t channel = 0; channel < 3; ++channel)
                upright.push_back(column == 2 && row == 1 ? 77 * 257 : samples[(row * 3 + column) * 3 + channel]);
    for (bool shared : {false, true}) {
        PhotoFacts written;
        const std::vector<uint8_t> file = editedTiff(
            folder, turnedTiff(samples, shared), [](HGLOBAL image) { setPixel(image, 0, 0, 77); }, &written);
        const uint32_t own = 0x12345678;
        EXPECT_EQ(written.pages, 2);
        EXPECT_TRUE(written.deep);
        EXPECT_EQ(written.orientation, 1);
        EXPECT_TRUE(contains(file, upright.data(), 36));
        EXPECT_TRUE(contains(file, &own, 4));
        EXPECT_EQ(contains(file, samples.data(), 36), shared);  // wiped, unless another page needs them
    }
}

TEST_F(HostPhotoKinds, ATiffFileWhosePagesHaveNoEndIsNotFollowedForEver)
{
    std::vector<uint8_t> file = turnedTiff(std::vector<uint16_t>(18), false);
    std::copy_n(&file[4], 4, file.end() - 4);  // the second page leads to the first
    SourcePhoto source;
    HGLOBAL image = nullptr;
    writeBytes(folder.path + L"a.tif", file);
    writeBytes(folder.path + L"b.tif", {});
    ASSERT_EQ(readPhoto(folder.path + L"a.tif", &image, &source), PhotoStatus::Ok);
    EXPECT_EQ(writePhoto(folder.path + L"b.tif", PhotoFormat::Tiff, image, &source), PhotoStatus::NotAPhoto);
    GlobalFree(image);
}

// A strip that has become longer moves to the file's end; the old one must not stay as it was.
TEST_F(HostPhotoKinds, WhatWasRetouchedDoesNotLiveOnInATiffFile)
{
    const std::vector<uint8_t> before =
        written(folder.path + L"c.tif", makePhoto(64, 48, [](int x, int y, int) { return x / 7 * 30 + y; }));
    PhotoFacts facts;
    const std::vector<uint8_t> after = editedTiff(
        folder, before,
        [](HGLOBAL image) {
            for (int i = 0; i < 64 * 48; ++i)
                setPixel(image, i % 64, i / 64, (uint8_t)(i * 2654435761u >> 24));
        },
        &facts);
    EXPECT_GT(after.size(), before.size());
    EXPECT_FALSE(contains(after, &before[100], 64));
}
