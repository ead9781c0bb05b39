#include <gtest/gtest.h>

#include "library/format/row_codec.h"
#include "library/format/thumbnail.h"
#include "tests/reference/memory_file.h"
#include "tests/reference/tiff_reference.h"
#include "tests/unit/vector_levels.h"

static void fill(MemoryImage& to, const reference::Picture& from)
{
    to.rows = storedRows(from, 0xCC);
    to.view.row0 = to.rows.data() - to.view.stride * (from.height - 1);
}

static bool writeInto(MemoryFile& file, const ReferenceSelection& selection)
{
    MemoryImage image(selection.image.width, selection.image.height), mask(selection.mask.width, selection.mask.height);
    fill(image, selection.image);
    fill(mask, selection.mask);
    const SelectionImages images = {image.view,
                                    mask.view,
                                    {selection.imageXPelsPerMetre, selection.imageYPelsPerMetre},
                                    {selection.maskXPelsPerMetre, selection.maskYPelsPerMetre}};
    return writeSelectionImages(file.sink(), images);
}

static reference::Picture contents(const MemoryImage& image)
{
    return reference::fromStoredRows(image.rows.data(), image.view.width, image.view.height);
}

struct ReadBack {
    SelectionDescription description = {};
    reference::Picture image{0, 0}, mask{0, 0}, thumbnail{0, 0};
    bool done = false;
};

static ReadBack readAll(MemoryFile& file)
{
    ReadBack result;
    if (!readSelectionDescription(file.source(), &result.description)) return result;
    const SelectionDescription& d = result.description;
    MemoryImage image(d.width, d.height), mask(d.width, d.height), thumbnail(THUMBNAIL_WIDTH, THUMBNAIL_HEIGHT);
    result.done = hasMaskBytes(file.source(), d) && readSelectionPixels(file.source(), d, image.view) &&
                  readSelectionMaskPixels(file.source(), d, mask.view) &&
                  readThumbnailPixels(file.source(), d, thumbnail.view);
    result.image = contents(image);
    result.mask = contents(mask);
    result.thumbnail = contents(thumbnail);
    return result;
}

static reference::Picture thumbnailImage(const ReferenceSelection& selection)
{
    const std::vector<uint8_t> rgb = referenceThumbnail(selection);
    reference::Picture image(40, 30);
    for (size_t i = 0; i < image.pixels.size(); ++i)
        image.pixels[i] = {rgb[i * 3 + 2], rgb[i * 3 + 1], rgb[i * 3]};
    return image;
}

static const struct {
    int width, height;
} sizes[] = {{1, 1},   {1, 2},   {2, 1},  {17, 9},     {100, 10},  {10, 100},  {1, 300}, {300, 1}, {40, 30},
             {41, 31}, {16, 40}, {33, 7}, {1030, 770}, {65535, 2}, {3, 65535}, {1, 20},  {8, 8},   {400, 301}};

TEST(SelectionTiffWriter, EqualsTheIndependentWriterByteForByte)
{
    unsigned seed = 1;
    for (const auto& size : sizes) {
        const ReferenceSelection selection = randomSelection(seed++, size.width, size.height);
        MemoryFile file;
        ASSERT_TRUE(writeInto(file, selection));
        const std::vector<uint8_t> expected = referenceTiff(selection);
        ASSERT_EQ(file.bytes.size(), expected.size()) << size.width << " x " << size.height;
        for (size_t i = 0; i < expected.size(); ++i) {
            ASSERT_EQ(file.bytes[i], expected[i]) << size.width << " x " << size.height << ", offset " << i;
        }
    }
}

TEST(SelectionTiffWriter, HasTheFixedPlacesOfTheLayout)
{
    MemoryFile file;
    ASSERT_TRUE(writeInto(file, randomSelection(5, 17, 9)));
    // 192 + 459 pixel bytes = 651; 651 + 178 + 27 mask bytes = 856; 856 + 184 + 3600 = 4640.
    EXPECT_EQ(file.bytes.size(), 4640u);
    const uint8_t head[] = {'I', 'I', 42, 0, 8, 0, 0, 0, 13, 0};
    EXPECT_EQ(0, memcmp(file.bytes.data(), head, sizeof head));
    EXPECT_EQ(file.bytes[166] | file.bytes[167] << 8, 651);
    EXPECT_EQ(file.bytes[651 + 158] | file.bytes[651 + 159] << 8, 856);
    EXPECT_EQ(file.bytes[856], 13);
    EXPECT_EQ(file.bytes[856 + 158] | file.bytes[856 + 159] << 8, 0);
}

TEST(SelectionTiffWriter, ThumbnailKeepsTheSelectionsRowsPerStrip)
{
    MemoryFile file;
    ASSERT_TRUE(writeInto(file, randomSelection(5, 17, 9)));
    const size_t rowsPerStrip = 856 + 2 + 8 * 12;  // the ninth entry of directory 3
    EXPECT_EQ(file.bytes[rowsPerStrip] | file.bytes[rowsPerStrip + 1] << 8, 278);
    EXPECT_EQ(file.bytes[rowsPerStrip + 8] | file.bytes[rowsPerStrip + 9] << 8, 9);
}

TEST(SelectionTiffWriter, SeventeenPixelsMakeThreeByteMaskRowsWithOneBitInTheLast)
{
    ReferenceSelection selection(17, 1);
    for (int x = 0; x < 17; ++x)
        selection.mask.at(x, 0) = {255, 255, 255};
    MemoryFile file;
    ASSERT_TRUE(writeInto(file, selection));
    const size_t mask = 192 + 51 + 178;
    EXPECT_EQ(file.bytes[mask], 0xFF);
    EXPECT_EQ(file.bytes[mask + 1], 0xFF);
    EXPECT_EQ(file.bytes[mask + 2], 0x80);
    EXPECT_EQ(file.bytes[mask + 3], 13) << "directory 3 follows";
}

TEST(SelectionTiffWriter, OnlyTheRedByteMakesAMaskBit)
{
    ReferenceSelection selection(3, 1);
    selection.mask.at(0, 0) = {255, 255, 0};
    selection.mask.at(1, 0) = {0, 0, 1};
    MemoryFile file;
    ASSERT_TRUE(writeInto(file, selection));
    EXPECT_EQ(file.bytes[192 + 9 + 178], 0x40);
}

TEST(SelectionTiffWriter, ReportsAFailedWriteWhereverItHappens)
{
    const ReferenceSelection selection = randomSelection(3, 700, 300);
    MemoryFile whole;
    ASSERT_TRUE(writeInto(whole, selection));
    for (uint64_t taken = 0; taken < whole.bytes.size(); taken += 30000) {
        MemoryFile file;
        file.bytesTaken = taken;
        EXPECT_FALSE(writeInto(file, selection)) << taken;
    }
}

TEST(SelectionTiffWriter, RefusesSizesThatTheDirectoryCannotHold)
{
    PartPlace parts[PART_COUNT];
    EXPECT_TRUE(placeSelectionParts(65535, 1, parts));
    EXPECT_FALSE(placeSelectionParts(65536, 1, parts));
    EXPECT_FALSE(placeSelectionParts(1, 65536, parts));
    EXPECT_FALSE(placeSelectionParts(0, 1, parts));
    EXPECT_FALSE(placeSelectionParts(1, -1, parts));
    EXPECT_FALSE(placeSelectionParts(65535, 65535, parts)) << "12 GB";
    EXPECT_TRUE(placeSelectionParts(20000, 65535, parts));
    EXPECT_EQ(parts[PART_MASK].directory, 192u + 3u * 20000u * 65535u);

    ReferenceSelection selection(4, 4);
    selection.mask = reference::Picture(4, 3);
    MemoryFile file;
    EXPECT_FALSE(writeInto(file, selection)) << "image and mask of different sizes";
    EXPECT_TRUE(file.bytes.empty());
}

TEST(SelectionTiffReader, ReadsBackWhatWasWritten)
{
    unsigned seed = 100;
    for (const auto& size : sizes) {
        const ReferenceSelection selection = randomSelection(seed++, size.width, size.height);
        MemoryFile file;
        ASSERT_TRUE(writeInto(file, selection));
        const ReadBack back = readAll(file);
        ASSERT_TRUE(back.done) << size.width << " x " << size.height;
        EXPECT_TRUE(back.image.pixels == selection.image.pixels);
        EXPECT_TRUE(back.mask.pixels == selection.mask.pixels);
        EXPECT_TRUE(back.thumbnail.pixels == thumbnailImage(selection).pixels);
        EXPECT_FALSE(file.outside);
    }
}

TEST(SelectionTiffReader, AcceptsABigEndianFileOfTheSameStructure)
{
    for (const auto& size : sizes) {
        const ReferenceSelection selection = randomSelection(7, size.width, size.height);
        MemoryFile file;
        file.bytes = referenceTiff(selection, true);
        const ReadBack back = readAll(file);
        ASSERT_TRUE(back.done) << size.width << " x " << size.height;
        EXPECT_TRUE(back.image.pixels == selection.image.pixels);
        EXPECT_TRUE(back.mask.pixels == selection.mask.pixels);
        EXPECT_TRUE(back.thumbnail.pixels == thumbnailImage(selection).pixels);
    }
}

TEST(SelectionTiffReader, RowsLongerThanItsBufferComeInPieces)
{
    // 200000 pixels wide: only a LONG width can say so.
    const int width = 200000, height = 2;
    MemoryFile file;
    file.bytes = referenceTiff(randomSelection(1, 1, 1));
    file.bytes.resize(192);
    uint8_t* const entries = file.bytes.data() + 10;
    const auto setLong = [&](int index, int type, uint32_t value) {
        entries[index * 12 + 2] = (uint8_t)type;
        for (int i = 0; i < 4; ++i)
            entries[index * 12 + 8 + i] = (uint8_t)(value >> (8 * i));
    };
    setLong(1, 4, width);
    setLong(2, 4, height);
    setLong(9, 4, width * height * 3);
    const ReferenceSelection selection = randomSelection(2, width, height);
    const std::vector<uint8_t> body = referenceTiff(selection);
    file.bytes.insert(file.bytes.end(), body.begin() + 192, body.end());
    const ReadBack back = readAll(file);
    ASSERT_TRUE(back.done);
    EXPECT_TRUE(back.image.pixels == selection.image.pixels);
    EXPECT_TRUE(back.mask.pixels == selection.mask.pixels);
    EXPECT_TRUE(back.thumbnail.pixels == thumbnailImage(selection).pixels);
}

TEST(SelectionTiffResolution, ComesBackOneLowerBecause127IsAddedAndTakenOff)
{
    EXPECT_EQ(dotsPerInch(3780), 96u);
    EXPECT_EQ(pixelsPerMetre(96, 1, UNIT_INCH), 3779);
    ReferenceSelection selection(2, 2);
    selection.imageXPelsPerMetre = 3780;
    selection.imageYPelsPerMetre = 11811;
    MemoryFile file;
    ASSERT_TRUE(writeInto(file, selection));
    EXPECT_EQ(file.bytes[176], 96);
    EXPECT_EQ(file.bytes[184] | file.bytes[185] << 8, 300);
    const ReadBack back = readAll(file);
    EXPECT_EQ(back.description.xPelsPerMetre, 3779);
    EXPECT_EQ(back.description.yPelsPerMetre, (300 * 10000 - 127) / 254);
}

TEST(SelectionTiffResolution, KnowsInchesAndCentimetresOnly)
{
    EXPECT_EQ(pixelsPerMetre(38, 1, UNIT_CENTIMETRE), 3800);
    EXPECT_EQ(pixelsPerMetre(77, 2, UNIT_CENTIMETRE), 3800) << "whole-number division comes first";
    EXPECT_EQ(pixelsPerMetre(96, 1, 1), 0);
    EXPECT_EQ(pixelsPerMetre(0, 1, UNIT_INCH), 0);
    EXPECT_EQ(pixelsPerMetre(96, 0, UNIT_INCH), 0);
    EXPECT_EQ(pixelsPerMetre(1, 2, UNIT_INCH), 0);
    EXPECT_EQ(pixelsPerMetre(0xFFFFFFFF, 1, UNIT_INCH), INT32_MAX);
    EXPECT_EQ(pixelsPerMetre(0xFFFFFFFF, 0xFFFFFFFF, UNIT_CENTIMETRE), 100) << "division is unsigned";
    EXPECT_EQ(dotsPerInch(INT32_MAX), 54546084u);
}

TEST(SelectionThumbnail, TenTimesAsWideAsHighFillsRows13To16)
{
    const ThumbnailArea area = fitThumbnail(100, 10);
    EXPECT_EQ(area.left, 0);
    EXPECT_EQ(area.width, 40);
    EXPECT_EQ(area.top, 13);
    EXPECT_EQ(area.height, 4);
}

TEST(SelectionThumbnail, AnOddFittedWidthGainsOneColumn)
{
    const ThumbnailArea area = fitThumbnail(10, 100);  // fits as 3 columns
    EXPECT_EQ(area.left, 18);
    EXPECT_EQ(area.width, 4);
    EXPECT_EQ(area.top, 0);
    EXPECT_EQ(area.height, 30);
}

TEST(SelectionThumbnail, OnePixelWideRepeatsItsColumn)
{
    ReferenceSelection selection(1, 20);
    for (int y = 0; y < 20; ++y)
        selection.image.at(0, y) = {(uint8_t)y, 50, 60};
    MemoryImage image(1, 20), mask(1, 20);
    fill(image, selection.image);
    fill(mask, selection.mask);
    uint8_t rgb[THUMBNAIL_BYTES];
    drawThumbnail(rgb, image.view, mask.view);
    const ThumbnailArea area = fitThumbnail(1, 20);
    EXPECT_EQ(area.left, 19);
    EXPECT_EQ(area.width, 2);
    for (int y = 0; y < 30; ++y) {
        const uint8_t* const row = rgb + y * 120;
        EXPECT_EQ(0, memcmp(row + 19 * 3, row + 20 * 3, 3));
        EXPECT_EQ(row[19 * 3 + 2], y * 19 / 29);
        EXPECT_EQ(row[18 * 3], 192);
        EXPECT_EQ(row[21 * 3], 192);
    }
}

TEST(SelectionThumbnail, AVeryLongSelectionLeavesNoArea)
{
    EXPECT_EQ(fitThumbnail(1, 300).width, 0);
    EXPECT_EQ(fitThumbnail(300, 1).height, 0);
}

TEST(SelectionThumbnail, StaysInsideForEverySize)
{
    for (int width = 1; width < 400; ++width) {
        for (int height = 1; height < 400; ++height) {
            const ThumbnailArea area = fitThumbnail(width, height);
            ASSERT_TRUE(area.left >= 0 && area.top >= 0 && area.width >= 0 && area.height >= 0);
            ASSERT_TRUE(area.width != 1 && area.height != 1);
        }
    }
}

TEST(SelectionThumbnail, PixelsThatAreNotAllBlackInTheMaskStayGray)
{
    ReferenceSelection selection(2, 2);
    for (auto& p : selection.image.pixels)
        p = {1, 2, 3};
    for (auto& p : selection.mask.pixels)
        p = {1, 0, 0};  // inside by its red, but not all black
    EXPECT_EQ(referenceThumbnail(selection), std::vector<uint8_t>(3600, 192));
    MemoryFile file;
    ASSERT_TRUE(writeInto(file, selection));
    EXPECT_EQ(file.bytes, referenceTiff(selection));
}

class SelectionRows : public VectorLevels {};
FOR_EACH_VECTOR_LEVEL(SelectionRows);

TEST_P(SelectionRows, SwappingMatchesThePlainRuleAtEveryLength)
{
    std::mt19937 random(9);
    for (size_t pixels = 0; pixels < 200; ++pixels) {
        std::vector<uint8_t> from(pixels * 3), to(pixels * 3), expected(pixels * 3);
        for (uint8_t& b : from)
            b = (uint8_t)random();
        for (size_t i = 0; i < expected.size(); ++i)
            expected[i] = from[i / 3 * 3 + (2 - i % 3)];
        swapRedAndBlue(to.data(), from.data(), pixels);
        ASSERT_EQ(to, expected) << pixels;
    }
}

TEST_P(SelectionRows, PackingAndUnpackingMatchThePlainRuleAtEveryLength)
{
    std::mt19937 random(10);
    for (size_t pixels = 1; pixels < 200; ++pixels) {
        for (int kind = 0; kind < 4; ++kind) {
            std::vector<uint8_t> mask(pixels * 3), bits((pixels + 7) / 8, 0xEE), expected((pixels + 7) / 8);
            for (size_t i = 0; i < pixels; ++i) {
                const bool outside = kind == 0 ? false : kind == 1 ? true : kind == 2 ? random() & 1 : i % 50 < 25;
                for (int c = 0; c < 3; ++c)
                    mask[i * 3 + c] = outside ? 255 : 0;
                if (outside) expected[i / 8] |= (uint8_t)(0x80 >> i % 8);
            }
            packMaskRow(bits.data(), mask.data(), pixels);
            ASSERT_EQ(bits, expected) << pixels;
            std::vector<uint8_t> back(pixels * 3, 0xEE);
            unpackMaskRow(back.data(), bits.data(), pixels);
            ASSERT_EQ(back, mask) << pixels;
        }
    }
}
