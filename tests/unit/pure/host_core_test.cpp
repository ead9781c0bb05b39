#include "host/arguments.h"
#include "host/photo/exif_orientation.h"
#include "host/file_names.h"
#include "host/photo/photo_rows.h"
#include "host/placement.h"

#include <cstring>
#include <gtest/gtest.h>

TEST(HostArguments, ReadsPhotoOutputAndFlag)
{
    const HostArguments parsed = parseArguments({L"a.jpg", L"-o", L"b c.png", L"--overwrite"});
    EXPECT_EQ(parsed.problem, L"");
    EXPECT_EQ(parsed.photos, std::vector<std::wstring>{L"a.jpg"});
    EXPECT_EQ(parsed.output, L"b c.png");
    EXPECT_TRUE(parsed.overwrite);
    EXPECT_FALSE(parsed.help);
}

TEST(HostArguments, NothingMeansAsking)
{
    const HostArguments parsed = parseArguments({});
    EXPECT_EQ(parsed.problem, L"");
    EXPECT_TRUE(parsed.photos.empty());
}

TEST(HostArguments, DoubleDashMakesNamesOfOptions)
{
    EXPECT_EQ(parseArguments({L"--", L"-o"}).photos, std::vector<std::wstring>{L"-o"});
}

TEST(HostArguments, KeepsSeveralPhotosInTheirOrder)
{
    const HostArguments parsed = parseArguments({L"b.jpg", L"--overwrite", L"a.png", L"b.jpg"});
    EXPECT_EQ(parsed.problem, L"");
    EXPECT_EQ(parsed.photos, (std::vector<std::wstring>{L"b.jpg", L"a.png", L"b.jpg"}));
}

TEST(HostArguments, KeepTheWindowForNamedPhotos)
{
    const HostArguments parsed = parseArguments({L"--window", L"--", L"-b.jpg"});
    EXPECT_EQ(parsed.problem, L"");
    EXPECT_TRUE(parsed.window);
    EXPECT_EQ(parsed.photos, std::vector<std::wstring>{L"-b.jpg"});
    EXPECT_FALSE(parseArguments({L"b.jpg"}).window);
}

TEST(HostArguments, NamesWhatItCannotUnderstand)
{
    const std::vector<std::vector<std::wstring>> lines = {
        {L"a.jpg", L"b.jpg", L"-o", L"c.jpg"},
        {L"a.jpg", L""},
        {L"a.jpg", L"-o"},
        {L"a.jpg", L"-o", L""},
        {L"--window", L"a.jpg", L"--overwrite"},
        {L"--fast", L"a"},
        {L"-o", L"b.jpg"},
        {L"--overwrite"},
        {L""},
        {L"a", L"-o", L"b", L"-o", L"c"},
    };
    for (const auto& line : lines)
        EXPECT_NE(parseArguments(line).problem, L"") << line.size();
}

TEST(HostFileNames, FormatFollowsTheExtensionInEitherCase)
{
    EXPECT_EQ(formatOfName(L"a.JPG"), PhotoFormat::Jpeg);
    EXPECT_EQ(formatOfName(L"a.jpeg"), PhotoFormat::Jpeg);
    EXPECT_EQ(formatOfName(L"C:\\x.y\\a.Png"), PhotoFormat::Png);
    EXPECT_EQ(formatOfName(L"a.tiff"), PhotoFormat::Tiff);
    EXPECT_EQ(formatOfName(L"a.bmp"), PhotoFormat::Bmp);
    for (const wchar_t* name : {L"a", L"a.gif", L"a.jpgx", L"a.jp", L".png", L"folder.png/a", L"a.", L""})
        EXPECT_EQ(formatOfName(name), PhotoFormat::Unknown) << name;
}

TEST(HostFileNames, RetouchedNameStandsBeforeTheExtension)
{
    EXPECT_EQ(retouchedName(L"C:\\a.b\\photo.jpg", 1), L"C:\\a.b\\photo-retouched.jpg");
    EXPECT_EQ(retouchedName(L"photo.tar.TIF", 2), L"photo.tar-retouched-2.TIF");
    EXPECT_EQ(retouchedName(L"photo.gif", 1), L"photo-retouched.png");
    EXPECT_EQ(retouchedName(L"C:\\a.b\\photo", 3), L"C:\\a.b\\photo-retouched-3.png");
}

// What is left out goes in whole letters.
TEST(HostFileNames, LongNamesCanBeShortened)
{
    EXPECT_EQ(shortRetouchedName(L"a\\b.jpg", 1), L"a\\b-retouched.jpg");
    EXPECT_EQ(shortRetouchedName(L"a\\" + std::wstring(251, L'n') + L".jpg", 2),
              L"a\\" + std::wstring(239, L'n') + L"-retouched-2.jpg");
    EXPECT_EQ(shortRetouchedName(std::wstring(125, L'\u017C') + L".jpg", 1),
              std::wstring(120, L'\u017C') + L"-retouched.jpg");
    std::wstring pairs;
    for (int i = 0; i < 62; ++i)
        pairs += L"\xD83D\xDE00";
    EXPECT_EQ(shortRetouchedName(pairs + L".jpg", 1), pairs.substr(0, 120) + L"-retouched.jpg");
}

TEST(HostFileNames, FolderAndNameTakeThePathApart)
{
    for (const wchar_t* path : {L"C:\\a\\b.jpg", L"a/b.jpg", L"C:b.jpg", L"b.jpg"}) {
        EXPECT_EQ(nameOfPath(path), L"b.jpg");
        EXPECT_EQ(folderOfPath(path) + nameOfPath(path), path);
    }
}

TEST(HostPhotoRows, SizeIsCheckedBeforeItOverflows)
{
    EXPECT_EQ(packedPhotoSize(1, 1), 44u);
    EXPECT_EQ(packedPhotoSize(5, 3), 40u + 16 * 3);
    EXPECT_EQ(packedPhotoSize(0, 5), 0u);
    EXPECT_EQ(packedPhotoSize(5, -1), 0u);
    EXPECT_EQ(packedPhotoSize(4, (INT32_MAX - 40) / 12), 40u + (INT32_MAX - 40) / 12 * 12u);
    EXPECT_EQ(packedPhotoSize(4, (INT32_MAX - 40) / 12 + 1), 0u);
    EXPECT_EQ(packedPhotoSize(UINT32_MAX, UINT32_MAX), 0u);
    EXPECT_EQ(packedPhotoSize(65536, 65536), 0u);
}

// One letter a pixel: the file's 3 x 2 picture "abc/def" as each orientation shows it upright.
TEST(HostPhotoRows, EveryOrientationBecomesUpright)
{
    const char* upright[] = {"abc/def",  "cba/fed",  "fed/cba",  "def/abc",
                             "ad/be/cf", "da/eb/fc", "fc/eb/da", "cf/be/ad"};
    uint8_t source[2 * 3 * 4];
    for (int i = 0; i < 6; ++i) {
        memset(source + i * 4, 'a' + i, 3);
        source[i * 4 + 3] = 255;
    }
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const bool swapped = orientationSwapsSides(orientation);
        const int width = swapped ? 2 : 3, height = swapped ? 3 : 2;
        const int stride = (int)packedRowSize(width);
        std::vector<uint8_t> bits((size_t)stride * height, 0xCC);
        const UprightTarget target = {bits.data(), 3, 2, orientation};
        placeRowsOverWhite(target, source, 12, 0, 1);  // in two bands
        placeRowsOverWhite(target, source + 12, 12, 1, 1);
        std::string shown;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x)
                shown += (char)bits[(height - 1 - y) * stride + x * 3 + 1];
            for (int x = width * 3; x < stride; ++x)
                EXPECT_EQ(bits[y * stride + x], 0xCC) << "padding";
            if (y + 1 < height) shown += '/';
        }
        EXPECT_EQ(shown, upright[orientation - 1]) << orientation;
    }
}

TEST(HostPhotoRows, TransparencyShowsWhite)
{
    const uint8_t source[] = {10, 20, 30, 255, 10, 20, 30, 0, 0, 100, 255, 128};
    uint8_t bits[12] = {};
    placeRowsOverWhite({bits, 3, 1, 1}, source, 12, 0, 1);
    const uint8_t expected[] = {10, 20, 30, 255, 255, 255, 127, 177, 255, 0, 0, 0};
    EXPECT_EQ(memcmp(bits, expected, 12), 0);
}

TEST(HostPhotoRows, CopiesRowsFromTheTop)
{
    const uint8_t bits[] = {7, 8, 9, 0xCC, 4, 5, 6, 0xCC, 1, 2, 3, 0xCC};  // bottom row first
    uint8_t rows[8] = {};
    copyRowsTopDown(bits, 1, 3, 1, 2, rows, 4);
    const uint8_t expected[] = {4, 5, 6, 0, 7, 8, 9, 0};
    EXPECT_EQ(memcmp(rows, expected, 8), 0);
}

// A JPEG's beginning with one Exif segment whose only entry is the orientation.
static std::vector<uint8_t> exifFile(bool bigEndian, int orientation)
{
    const auto number = [&](uint32_t value, int length) {
        std::vector<uint8_t> bytes(length);
        for (int i = 0; i < length; ++i)
            bytes[bigEndian ? length - 1 - i : i] = (uint8_t)(value >> (8 * i));
        return bytes;
    };
    std::vector<uint8_t> file = {0xFF, 0xD8, 0xFF, 0xE0, 0, 4, 0, 0, 0xFF, 0xE1, 0, 34, 'E', 'x', 'i', 'f', 0, 0};
    const char mark = bigEndian ? 'M' : 'I';
    file.insert(file.end(), 2, (uint8_t)mark);
    for (const auto& part : {number(42, 2), number(8, 4), number(1, 2), number(274, 2), number(3, 2), number(1, 4),
                             number((uint32_t)orientation, 2), number(0, 2), number(0, 4)})
        file.insert(file.end(), part.begin(), part.end());
    return file;
}

TEST(HostOrientation, IsReadInBothByteOrders)
{
    for (bool bigEndian : {false, true})
        for (int orientation = 1; orientation <= 8; ++orientation) {
            const auto file = exifFile(bigEndian, orientation);
            EXPECT_EQ(jpegOrientation(file.data(), file.size()), orientation);
        }
}

TEST(HostOrientation, UnsoundNotesCountAsUpright)
{
    for (int orientation : {0, 9, 65535}) {
        const auto file = exifFile(true, orientation);
        EXPECT_EQ(jpegOrientation(file.data(), file.size()), 1);
    }
    EXPECT_EQ(jpegOrientation(nullptr, 0), 1);
}

// In a TIFF file the directory may lie anywhere; the head tells where, and the byte order.
TEST(HostOrientation, TiffDirectoriesAreFoundThroughTheHead)
{
    const uint8_t heads[][TIFF_HEAD_SIZE] = {{'I', 'I', 42, 0, 0x78, 0x56, 0x34, 0x12},
                                             {'M', 'M', 0, 42, 0x12, 0x34, 0x56, 0x78}};
    for (const uint8_t* head : heads)
        EXPECT_EQ(tiffDirectoryPlace(head), 0x12345678u);
    const uint8_t little[] = {2, 0, 0, 1, 3, 0, 1, 0, 0, 0, 9, 0, 0, 0, 0x12, 1, 3, 0, 1, 0, 0, 0, 8, 0, 0, 0};
    const uint8_t big[] = {0, 1, 1, 0x12, 0, 3, 0, 0, 0, 1, 0, 3, 0, 0};
    EXPECT_EQ(tiffOrientation(heads[0], little, sizeof little), 8);
    EXPECT_EQ(tiffOrientation(heads[1], big, sizeof big), 3);
    for (size_t size = 0; size < 24; ++size) {
        const std::vector<uint8_t> cut(little, little + size);
        EXPECT_EQ(tiffOrientation(heads[0], cut.data(), cut.size()), 1) << size;
    }
    const uint8_t none[] = {0xFF, 0xD8, 0xFF, 0xE1, 0, 34, 'E', 'x'};
    EXPECT_EQ(tiffDirectoryPlace(none), 0u);
}

// Run with the address sanitizer: a block of exactly the size makes one byte too far show.
TEST(HostOrientation, CutAndDamagedFilesAreNeverReadBeyondTheirEnd)
{
    const auto whole = exifFile(false, 6);
    for (size_t size = 0; size < whole.size(); ++size) {
        const std::vector<uint8_t> cut(whole.begin(), whole.begin() + (ptrdiff_t)size);
        EXPECT_EQ(jpegOrientation(cut.data(), cut.size()), 1) << size;
    }
    for (size_t at = 0; at < whole.size(); ++at)
        for (int value : {0x00, 0x01, 0x7F, 0xFF}) {
            std::vector<uint8_t> damaged = whole;
            damaged[at] = (uint8_t)value;
            const int orientation = jpegOrientation(damaged.data(), damaged.size());
            EXPECT_TRUE(orientation >= 1 && orientation <= 8);
        }
}

TEST(HostPlacement, LargePhotosAreScaledDownKeepingTheAspect)
{
    const ScreenSize wide = clientSizeFor({5312, 2988}, {1400, 1100});
    EXPECT_EQ(wide.width, 1400);
    EXPECT_EQ(wide.height, 787);  // 787.5 truncated
    const ScreenSize tall = clientSizeFor({2988, 5312}, {1400, 1100});
    EXPECT_EQ(tall.width, 618);
    EXPECT_EQ(tall.height, 1100);
}

TEST(HostPlacement, PhotosThatFitKeepTheirSize)
{
    const ScreenSize size = clientSizeFor({640, 480}, {1400, 1100});
    EXPECT_EQ(size.width, 640);
    EXPECT_EQ(size.height, 480);
}

TEST(HostPlacement, TinyPhotosAreEnlargedAtMostEightTimes)
{
    EXPECT_EQ(clientSizeFor({3, 5}, {1400, 1100}).width, 24);
    EXPECT_EQ(clientSizeFor({100, 50}, {1400, 1100}).width, 300);
    EXPECT_EQ(clientSizeFor({100, 50}, {250, 200}).width, 200);
}

TEST(HostPlacement, NoSideVanishes)
{
    EXPECT_EQ(clientSizeFor({100000, 1}, {1400, 1100}).height, 1);
    EXPECT_EQ(clientSizeFor({1, 100000}, {1400, 1100}).width, 1);
    EXPECT_EQ(clientSizeFor({5000, 5000}, {-20, 0}).width, 1);
}

TEST(HostPlacement, WindowAndPaletteLieInsideTheWorkAreaSideBySide)
{
    const ScreenBox work = {100, 50, 1700, 1150};
    for (const ScreenSize image : {ScreenSize{5312, 2988}, {1, 1}, {3000, 4000}, {1600, 1100}}) {
        const Placement place = placeWindows(image, work, {8, 30}, {104, 584});
        EXPECT_GE(place.paletteLeft, work.left);
        EXPECT_GE(place.paletteTop, work.top);
        EXPECT_LE(place.paletteTop + 584, work.bottom);
        EXPECT_GE(place.dialog.left, place.paletteLeft + 104);
        EXPECT_GE(place.dialog.top, work.top);
        EXPECT_LE(place.dialog.right, work.right);
        EXPECT_LE(place.dialog.bottom, work.bottom);
    }
}
