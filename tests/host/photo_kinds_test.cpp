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

TEST_F(HostPhotoKinds, ABitmapFilesProfileAndAlphaAreKnown)
{
    constexpr size_t headSize = 14, profileSize = 10;
    BITMAPV5HEADER info = {};
    info.bV5Size = sizeof info;
    info.bV5Width = info.bV5Height = info.bV5Planes = 1;
    info.bV5BitCount = 32;
    info.bV5Compression = BI_BITFIELDS;
    info.bV5RedMask = 0xFF0000;
    info.bV5GreenMask = 0xFF00;
    info.bV5BlueMask = 0xFF;
    info.bV5AlphaMask = 0xFF000000;
    info.bV5CSType = 0x4D424544;  // embedded
    info.bV5ProfileData = sizeof info + 4;
    info.bV5ProfileSize = profileSize;
    std::vector<uint8_t> file(headSize + sizeof info + 4 + profileSize, 'p');
    const uint8_t head[headSize] = {'B', 'M', (uint8_t)file.size(), 0, 0, 0, 0, 0, 0, 0, headSize + sizeof info};
    memcpy(&file[0], head, headSize);
    memcpy(&file[headSize], &info, sizeof info);
    writeBytes(folder.path + L"a.bmp", file);
    ASSERT_TRUE(startImaging());
    SourcePhoto source;
    HGLOBAL image = nullptr;
    EXPECT_EQ(readPhoto(folder.path + L"a.bmp", &image, &source), PhotoStatus::Ok);
    GlobalFree(image);
    stopImaging();
    EXPECT_TRUE(source.facts.alpha);
    EXPECT_EQ(source.facts.profile, std::vector<uint8_t>(profileSize, 'p'));
    EXPECT_EQ(lossesOf(source, PhotoFormat::Bmp).names, (std::vector<TextId>{TEXT_LOSS_ALPHA, TEXT_LOSS_PROFILE}));
}
