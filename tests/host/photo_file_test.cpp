#include "host/photo_file.h"
#include "host/photo/photo_rows.h"
#include "tests/host/test_folder.h"
#include "tests/session/import_patch.h"

#include <cstring>
#include <gtest/gtest.h>
#include <io.h>
#include <iterator>

struct ImagingTest : testing::Test {
    TestFolder folder;
    void SetUp() override { ASSERT_TRUE(startImaging()); }
    void TearDown() override { stopImaging(); }
};
using HostPhotoFile = ImagingTest;

static const wchar_t* const extensions[] = {L".png", L".bmp", L".tif", L".jpg"};
static const SIZE sizes[] = {{1, 1}, {3, 5}, {7, 2}, {33, 130}, {640, 65}};

static uint8_t noise(int x, int y, int channel)
{
    return (uint8_t)((x * 7 + y * 13 + channel * 57) * 2654435761u >> 24);
}

// JPEG keeps slow changes only.
static uint8_t slope(int x, int y, int channel)
{
    return (uint8_t)(40 + channel * 50 + (x + y) / 8);
}

static HGLOBAL makePhoto(SIZE size, uint8_t (*value)(int, int, int), LONG pelsPerMetre)
{
    HGLOBAL image = GlobalAlloc(GHND, packedPhotoSize(size.cx, size.cy));
    BITMAPINFOHEADER* header = (BITMAPINFOHEADER*)GlobalLock(image);
    *header = {sizeof *header, size.cx, size.cy, 1, 24, BI_RGB, 0, pelsPerMetre, pelsPerMetre, 0, 0};
    uint8_t* bits = (uint8_t*)(header + 1);
    for (int y = 0; y < size.cy; ++y)
        for (int x = 0; x < size.cx; ++x)
            for (int channel = 0; channel < 3; ++channel)
                bits[(size.cy - 1 - y) * packedRowSize(size.cx) + x * 3 + channel] = value(x, y, channel);
    GlobalUnlock(image);
    return image;
}

// Writes the picture to a file of that name and looks whether it is what was meant.
static void writeChecked(HGLOBAL image, const std::wstring& name, const SourcePhoto* source = nullptr)
{
    writeBytes(name, {});
    ASSERT_EQ(writePhoto(name, formatOfName(name), image, source), PhotoStatus::Ok);
    EXPECT_TRUE(verifyPhoto(name, formatOfName(name), image, source));
}

static PhotoStatus readPhoto(const std::wstring& name, HGLOBAL* image)
{
    SourcePhoto source;
    return readPhoto(name, image, &source);
}

// The largest difference of a pixel byte; 256 when the sizes differ.
static int difference(HGLOBAL one, HGLOBAL other)
{
    const BITMAPINFOHEADER* a = (const BITMAPINFOHEADER*)GlobalLock(one);
    const BITMAPINFOHEADER* b = (const BITMAPINFOHEADER*)GlobalLock(other);
    int largest = 256;
    if (a && b && a->biWidth == b->biWidth && a->biHeight == b->biHeight && a->biBitCount == b->biBitCount) {
        largest = 0;
        const ptrdiff_t stride = packedRowSize(a->biWidth);
        for (int y = 0; y < a->biHeight; ++y)
            for (int i = 0; i < a->biWidth * 3; ++i)
                largest = std::max(largest, abs(((const uint8_t*)(a + 1))[y * stride + i] -
                                                ((const uint8_t*)(b + 1))[y * stride + i]));
    }
    GlobalUnlock(one);
    GlobalUnlock(other);
    return largest;
}

static LONG resolutionOf(HGLOBAL image)
{
    const LONG value = ((const BITMAPINFOHEADER*)GlobalLock(image))->biXPelsPerMeter;
    GlobalUnlock(image);
    return value;
}

TEST_F(HostPhotoFile, EveryFormatComesBackAsItWasWritten)
{
    for (const wchar_t* extension : extensions)
        for (SIZE size : sizes) {
            const bool lossy = formatOfName(std::wstring(L"a") + extension) == PhotoFormat::Jpeg;
            const std::wstring name = folder.path + L"zdjęcie 写真" + extension;
            HGLOBAL image = makePhoto(size, lossy ? slope : noise, 11811);
            writeChecked(image, name);
            HGLOBAL back;
            ASSERT_EQ(readPhoto(name, &back), PhotoStatus::Ok) << extension << size.cx;
            EXPECT_LE(difference(image, back), lossy ? 8 : 0) << extension << " " << size.cx << " x " << size.cy;
            EXPECT_NEAR(resolutionOf(back), 11811, 40) << extension;  // 300 dots per inch, which JPEG rounds
            GlobalFree(back);
            GlobalFree(image);
        }
}

TEST_F(HostPhotoFile, TheOriginalsExtrasNeverSpoilTheResult)
{
    HGLOBAL image = makePhoto({9, 7}, noise, 2835);
    for (const wchar_t* from : extensions) {
        const std::wstring original = folder.path + L"original" + from;
        writeChecked(image, original);
        HGLOBAL shown;
        SourcePhoto source;
        ASSERT_EQ(readPhoto(original, &shown, &source), PhotoStatus::Ok);
        GlobalFree(shown);
        const std::wstring result = folder.path + L"result.png";
        writeChecked(image, result, &source);
        HGLOBAL back;
        ASSERT_EQ(readPhoto(result, &back), PhotoStatus::Ok);
        EXPECT_EQ(difference(image, back), 0) << from;
        GlobalFree(back);
    }
    GlobalFree(image);
}

TEST_F(HostPhotoFile, ANotedOrientationTurnsThePhoto)
{
    const std::wstring name = folder.path + L"a.jpg";
    HGLOBAL image = makePhoto({48, 16}, slope, 0);
    writeChecked(image, name);
    std::vector<uint8_t> file = readBytes(name);
    const uint8_t note[] = {0xFF, 0xE1, 0, 34,   'E', 'x', 'i', 'f', 0, 0, 'M', 'M', 0, 42, 0, 0, 0, 8,
                            0,    1,    1, 0x12, 0,   3,   0,   0,   0, 1, 0,   6,   0, 0,  0, 0, 0, 0};
    file.insert(file.begin() + 2, note, note + sizeof note);
    writeBytes(name, file);
    HGLOBAL back;
    ASSERT_EQ(readPhoto(name, &back), PhotoStatus::Ok);
    const BITMAPINFOHEADER* header = (const BITMAPINFOHEADER*)GlobalLock(back);
    EXPECT_EQ(header->biWidth, 16);
    EXPECT_EQ(header->biHeight, 48);
    // The file's first pixel, its darkest, is now the upright photo's top right one.
    const uint8_t* bits = (const uint8_t*)(header + 1);
    EXPECT_LT(bits[47 * 48 + 15 * 3], bits[0] - 3);
    GlobalUnlock(back);
    GlobalFree(back);
    GlobalFree(image);
}

// Three pixels, black, grey and white from left to right, to be turned clockwise. The directory, behind the
// pixels, is what a scanner's TIFF file has as a rule.
TEST_F(HostPhotoFile, ATiffFilesOrientationTurnsThePhoto)
{
    std::vector<uint8_t> file = {'I', 'I', 42, 0, 12, 0, 0, 0, 0, 128, 255, 0};
    const uint16_t entries[][3] = {{256, 3, 3}, {257, 3, 1}, {258, 3, 8}, {259, 3, 1}, {262, 3, 1},
                                   {273, 3, 8}, {274, 3, 6}, {277, 3, 1}, {278, 3, 1}, {279, 3, 3}};
    file.push_back((uint8_t)std::size(entries));
    file.push_back(0);
    for (const auto& entry : entries)
        for (int word : {(int)entry[0], (int)entry[1], 1, 0, (int)entry[2], 0}) {
            file.push_back((uint8_t)word);
            file.push_back((uint8_t)(word >> 8));
        }
    file.insert(file.end(), 4, 0);
    const std::wstring name = folder.path + L"a.tif";
    writeBytes(name, file);
    HGLOBAL back;
    ASSERT_EQ(readPhoto(name, &back), PhotoStatus::Ok);
    const BITMAPINFOHEADER* header = (const BITMAPINFOHEADER*)GlobalLock(back);
    EXPECT_EQ(header->biWidth, 1);
    EXPECT_EQ(header->biHeight, 3);
    const uint8_t* bits = (const uint8_t*)(header + 1);  // bottom row first
    EXPECT_EQ(bits[0], 255);
    EXPECT_EQ(bits[4], 128);
    EXPECT_EQ(bits[8], 0);
    GlobalUnlock(back);
    GlobalFree(back);
}

// A file that an encoder has left short or wrong never passes as saved.
TEST_F(HostPhotoFile, WhatIsNotThePictureIsNotTakenForIt)
{
    for (const wchar_t* extension : extensions) {
        const std::wstring name = folder.path + L"written" + extension;
        HGLOBAL image = makePhoto({64, 48}, slope, 0), other = makePhoto({64, 48}, noise, 0);
        writeChecked(image, name);
        std::vector<uint8_t> bytes = readBytes(name);
        EXPECT_FALSE(verifyPhoto(name, formatOfName(name), other, nullptr)) << extension;
        bytes.resize(bytes.size() / 2);
        writeBytes(name, bytes);
        EXPECT_FALSE(verifyPhoto(name, formatOfName(name), image, nullptr)) << extension;
        writeBytes(name, std::vector<uint8_t>(8, 'I'));
        EXPECT_FALSE(verifyPhoto(name, formatOfName(name), image, nullptr)) << extension;
        GlobalFree(image);
        GlobalFree(other);
    }
}

TEST_F(HostPhotoFile, AnUntouchedPhotoIsSavedByteForByte)
{
    for (const wchar_t* extension : {L".jpg", L".tif", L".bmp"}) {
        const std::wstring name = folder.path + L"first" + extension, again = folder.path + L"again" + extension;
        HGLOBAL image = makePhoto({77, 51}, slope, 11811), shown;
        writeChecked(image, name);
        SourcePhoto source;
        ASSERT_EQ(readPhoto(name, &shown, &source), PhotoStatus::Ok);
        writeChecked(shown, again, &source);
        EXPECT_EQ(readBytes(again), readBytes(name)) << extension;
        GlobalFree(image);
        GlobalFree(shown);
    }
}

// A disk that does not take what the system has put off until a file is flushed.
static bool flushWorks;
static int flushes;
static ImportPatch flushPatch, commitPatch;

static BOOL WINAPI watchedFlush(HANDLE file)
{
    ++flushes;
    return flushWorks && ((BOOL(WINAPI*)(HANDLE))flushPatch.before)(file);
}

static int watchedCommit(int file)
{
    return watchedFlush((HANDLE)_get_osfhandle(file)) ? 0 : -1;
}

TEST_F(HostPhotoFile, WhatDoesNotReachTheDiskIsNotWritten)
{
    ASSERT_TRUE(patchImport(&flushPatch, GetModuleHandleW(nullptr), "FlushFileBuffers", (void*)watchedFlush));
    ASSERT_TRUE(patchImport(&commitPatch, GetModuleHandleW(nullptr), "_commit", (void*)watchedCommit));
    HGLOBAL image = makePhoto({33, 130}, slope, 11811);
    for (const wchar_t* extension : extensions) {
        const std::wstring name = folder.path + L"a" + extension;
        for (bool works : {false, true}) {
            flushWorks = works;
            flushes = 0;
            writeBytes(name, {});
            EXPECT_EQ(writePhoto(name, formatOfName(name), image, nullptr),
                      works ? PhotoStatus::Ok : PhotoStatus::CannotWrite)
                << extension;
            EXPECT_EQ(flushes, 1) << extension;
        }
    }
    GlobalFree(image);
    undoPatch(&commitPatch);
    undoPatch(&flushPatch);
}

TEST_F(HostPhotoFile, MissingFilesAndFoldersAreToldApart)
{
    HGLOBAL image;
    EXPECT_EQ(readPhoto(folder.path + L"none.jpg", &image), PhotoStatus::Missing);
    EXPECT_EQ(readPhoto(folder.path + L"no\\none.jpg", &image), PhotoStatus::Missing);
    EXPECT_EQ(readPhoto(folder.path, &image), PhotoStatus::Unreadable);
    EXPECT_EQ(image, nullptr);
}

TEST_F(HostPhotoFile, WhatIsNoPhotoIsRefused)
{
    HGLOBAL image;
    const std::wstring name = folder.path + L"a.jpg";
    writeBytes(name, {});
    EXPECT_EQ(readPhoto(name, &image), PhotoStatus::NotAPhoto);
    writeBytes(name, std::vector<uint8_t>(5000, 'x'));
    EXPECT_EQ(readPhoto(name, &image), PhotoStatus::NotAPhoto);
}

// Cut at many places: refused, or (where a decoder makes the best of it) a photo of the right size.
TEST_F(HostPhotoFile, CutFilesNeverCrash)
{
    for (const wchar_t* extension : extensions) {
        const std::wstring name = folder.path + L"cut" + extension;
        HGLOBAL image = makePhoto({40, 30}, noise, 0);
        writeChecked(image, name);
        const std::vector<uint8_t> whole = readBytes(name);
        GlobalFree(image);
        int refused = 0;
        for (size_t part = 0; part < 16; ++part) {
            writeBytes(name, {whole.begin(), whole.begin() + (ptrdiff_t)(whole.size() * part / 16)});
            HGLOBAL back;
            const PhotoStatus status = readPhoto(name, &back);
            if (status == PhotoStatus::Ok) {
                EXPECT_GE(GlobalSize(back), packedPhotoSize(40, 30));
            } else {
                refused++;
                EXPECT_EQ(back, nullptr);
            }
            GlobalFree(back);
        }
        EXPECT_GE(refused, 1) << extension;
    }
}

TEST_F(HostPhotoFile, ASizeBeyondMemoryIsTooLarge)
{
    // A bitmap file whose header promises 60000 x 60000 pixels and that ends there.
    BITMAPFILEHEADER file = {};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
    file.bfSize = file.bfOffBits;
    const BITMAPINFOHEADER header = {sizeof header, 60000, 60000, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    std::vector<uint8_t> bytes(file.bfOffBits);
    memcpy(bytes.data(), &file, sizeof file);
    memcpy(bytes.data() + sizeof file, &header, sizeof header);
    const std::wstring name = folder.path + L"large.bmp";
    writeBytes(name, bytes);
    HGLOBAL image;
    const PhotoStatus status = readPhoto(name, &image);
    EXPECT_EQ(status, PhotoStatus::TooLarge);
    EXPECT_EQ(image, nullptr);
}
