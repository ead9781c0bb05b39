// Photos whose rows are far longer than a camera's, through the readers and the writers.
#include "host/codecs/tiff_file.h"
#include "host/locked_photo.h"
#include "host/photo/photo_rows.h"
#include "host/photo_file.h"
#include "tests/host/test_folder.h"

#include <algorithm>
#include <gtest/gtest.h>

constexpr int RUN = 128;  // pixels that are alike: what one run of packed bytes holds
constexpr int STRIDE_OF_PROBES = 997;

static uint8_t greyAt(int x, int y)
{
    return (uint8_t)(x / RUN * 37 + y * 11 + 5);
}

static void append(std::vector<uint8_t>* bytes, uint32_t value, int size)
{
    for (int i = 0; i < size; ++i)
        bytes->push_back((uint8_t)(value >> 8 * i));
}

static std::vector<uint8_t> packedRow(int width, int y)
{
    std::vector<uint8_t> row;
    for (int x = 0; x < width; x += RUN) {
        row.push_back((uint8_t)(257 - std::min(RUN, width - x)));
        row.push_back(greyAt(x, y));
    }
    return row;
}

// A list of numbers in a TIFF file lies where its entry tells; one number alone is the entry's value itself.
static void appendLists(std::vector<uint8_t>* file, uint32_t rowsAt, uint32_t rowSize, int height)
{
    for (int y = 0; y < height && height > 1; ++y)
        append(file, rowsAt + (uint32_t)y * rowSize, 4);
    for (int y = 0; y < height && height > 1; ++y)
        append(file, rowSize, 4);
}

// A grey TIFF file in packed bytes, each row a strip of its own: small, however many pixels there are.
static std::vector<uint8_t> longTiff(int width, int height)
{
    constexpr uint32_t ENTRIES = 9, LISTS_AT = 10 + ENTRIES * 12 + 4;
    const uint32_t count = (uint32_t)height, rowSize = (uint32_t)packedRow(width, 0).size();
    const uint32_t rowsAt = LISTS_AT + (count > 1 ? 8 * count : 0);
    const uint32_t entries[ENTRIES][4] = {{256, 4, 1, (uint32_t)width},  // tag, type, count, value
                                          {257, 4, 1, count},
                                          {258, 3, 1, 8},
                                          {259, 3, 1, 32773},
                                          {262, 3, 1, 1},
                                          {273, 4, count, count > 1 ? LISTS_AT : rowsAt},
                                          {277, 3, 1, 1},
                                          {278, 3, 1, 1},
                                          {279, 4, count, count > 1 ? LISTS_AT + 4 * count : rowSize}};
    std::vector<uint8_t> file = {'I', 'I', 42, 0, 8, 0, 0, 0, (uint8_t)ENTRIES, 0};
    for (const auto& entry : entries)
        for (int field = 0; field < 4; ++field)
            append(&file, entry[field], field < 2 ? 2 : 4);
    append(&file, 0, 4);
    appendLists(&file, rowsAt, rowSize, height);
    for (int y = 0; y < height; ++y) {
        const std::vector<uint8_t> row = packedRow(width, y);
        file.insert(file.end(), row.begin(), row.end());
    }
    return file;
}

static uint8_t* pixelAt(const LockedPhoto& photo, int x, int y)
{
    const BITMAPINFOHEADER* header = photo.header;
    return (uint8_t*)header + header->biSize + (size_t)(header->biHeight - 1 - y) * packedRowSize(header->biWidth) +
           (size_t)x * 3;
}

static int wrongPixels(const LockedPhoto& photo)
{
    int wrong = 0;
    for (int y = 0; y < photo.header->biHeight; ++y)
        for (int x = 0; x < photo.header->biWidth; x += STRIDE_OF_PROBES) {
            const uint8_t* pixel = pixelAt(photo, x, y);
            wrong += std::any_of(pixel, pixel + 3, [&](uint8_t value) { return value != greyAt(x, y); });
        }
    return wrong;
}

struct HostLongPhoto : testing::Test {
    TestFolder folder;
    HGLOBAL image = nullptr;
    SourcePhoto source;

    void SetUp() override { ASSERT_TRUE(startImaging()); }
    void TearDown() override
    {
        GlobalFree(image);
        stopImaging();
    }
    std::wstring named(const wchar_t* name) const { return folder.path + name; }

    // The photo is read and has the sides and pixels that were meant.
    void readLong(int width, int height)
    {
        writeBytes(named(L"long.tif"), longTiff(width, height));
        ASSERT_EQ(readPhoto(named(L"long.tif"), &image, &source), PhotoStatus::Ok);
        const LockedPhoto photo(image);
        ASSERT_EQ(photo.header->biWidth, width);
        ASSERT_EQ(photo.header->biHeight, height);
        EXPECT_EQ(wrongPixels(photo), 0);
    }

    void write(const wchar_t* name)
    {
        writeBytes(named(name), {});
        ASSERT_EQ(writePhoto(named(name), formatOfName(name), image, &source), PhotoStatus::Ok);
    }
};

static PhotoStatus beginAnything(void*, const PhotoShape&)
{
    return PhotoStatus::Ok;
}

static bool measureBand(void* bytes, const uint8_t*, ptrdiff_t stride, int, int rowCount)
{
    *(ptrdiff_t*)bytes = stride * rowCount;
    return false;  // the first is enough
}

// What the decoder wants beside the picture stays small, also where 64 rows are more than the picture.
TEST_F(HostLongPhoto, RowsOfThreeMillionPixelsComeInSmallBands)
{
    writeBytes(named(L"long.tif"), longTiff(3158064, 48));
    ptrdiff_t bytes = 0;
    PhotoFacts facts;
    readTiff(named(L"long.tif").c_str(), {&bytes, beginAnything, measureBand}, &facts);
    EXPECT_GT(bytes, 0);
    EXPECT_LE(bytes, 64 << 20);
}

// Unedited, and so the whole file must come back; looking for an edit in it would cost another look at 150 million
// pixels.
TEST_F(HostLongPhoto, RowsOfThreeMillionPixelsAreReadAndWritten)
{
    readLong(3158064, 48);
    if (HasFatalFailure()) return;
    write(L"result.tif");
    EXPECT_TRUE(readBytes(named(L"result.tif")) == readBytes(named(L"long.tif")));
}

TEST_F(HostLongPhoto, ASingleRowOfTwentyThreeMillionPixelsIsReadAndWritten)
{
    constexpr int WIDTH = 23000000;
    readLong(WIDTH, 1);
    if (HasFatalFailure()) return;
    {
        const LockedPhoto photo(image);
        std::fill_n(pixelAt(photo, WIDTH - 1, 0), 3, (uint8_t)(greyAt(WIDTH - 1, 0) ^ 0x80));
    }
    write(L"result.bmp");
    EXPECT_TRUE(verifyPhoto(named(L"result.bmp"), PhotoFormat::Bmp, image, &source));
}
