// What is particular to one kind of photo file.
#include "host/losses.h"
#include "host/photo/photo_rows.h"
#include "tests/host/test_folder.h"

#include <algorithm>
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
