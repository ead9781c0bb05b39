// Every function that has a variant for each level of vectors, by its plain rule, one byte after the other: all widths
// from 1 to 130, starts that no vector is aligned to, and nothing changed beside the row.
#include <algorithm>

#include "color/kernels/adjust.h"
#include "image/pixels/nearest.h"
#include "image/pixels/pixel_rows.h"
#include "library/format/row_codec.h"
#include "tests/reference/bitmap_reference.h"
#include "tests/reference/colour_reference.h"
#include "tests/unit/pure/guarded_image.h"
#include "tests/unit/vector_levels.h"
#include "tools/kernels/paint_rows.h"

constexpr int WIDEST = 130;

class VectorRows : public VectorLevels {
protected:
    Dice dice = {17};

    // `count` bytes at a place of their own in the middle of others.
    struct Row {
        std::vector<uint8_t> bytes;
        size_t first;

        uint8_t* begin() { return bytes.data() + first; }
        uint8_t& at(size_t n) { return bytes[first + n]; }
    };

    Row row(size_t count)
    {
        Row made = {std::vector<uint8_t>(count + 2 * GUARD), GUARD - (size_t)dice.upTo(64)};
        for (uint8_t& byte : made.bytes)
            byte = (uint8_t)dice.upTo(255);
        return made;
    }

    // Zero with the chance of `tenths` in ten, else up to `most`.
    Row cells(int count, int tenths, int most)
    {
        Row made = row((size_t)count);
        for (int n = 0; n < count; ++n)
            made.at((size_t)n) = dice.upTo(9) < tenths ? 0 : (uint8_t)dice.between(1, most);
        return made;
    }

    template <typename Check>
    void everyWidth(Check check)
    {
        for (int width = 1; width <= WIDEST; ++width)
            for (int start = 0; start < 4; ++start) {
                SCOPED_TRACE(width);
                ASSERT_NO_FATAL_FAILURE(check(width));
            }
    }
};
FOR_EACH_VECTOR_LEVEL(VectorRows);

static uint8_t mixed(int under, int over, int opacity)
{
    return (uint8_t)((under * (100 - opacity) + over * opacity) / 100);
}

TEST_P(VectorRows, FillAndCopy)
{
    everyWidth([&](int width) {
        const size_t count = (size_t)dice.between(width, width * 3);
        Row from = row(count), copied = row(count), expected = copied;
        for (size_t n = 0; n < count; ++n)
            expected.at(n) = from.at(n);
        Row large = copied;
        pixelRows().copy(copied.begin(), from.begin(), count);
        ASSERT_EQ(expected.bytes, copied.bytes);
        pixelRows().copyLarge(large.begin(), from.begin(), count);
        ASSERT_EQ(expected.bytes, large.bytes);
        for (size_t n = 0; n < count; ++n)
            expected.at(n) = 93;
        pixelRows().fill(copied.begin(), 93, count);
        ASSERT_EQ(expected.bytes, copied.bytes);
    });
}

TEST_P(VectorRows, RedAndBlueAreExchanged)
{
    everyWidth([&](int width) {
        Row from = row((size_t)width * 3), to = row((size_t)width * 3), expected = to;
        for (size_t n = 0; n < (size_t)width * 3; ++n)
            expected.at(n) = from.at(n / 3 * 3 + 2 - n % 3);
        pixelRows().swapRedAndBlue(to.begin(), from.begin(), (size_t)width);
        ASSERT_EQ(expected.bytes, to.bytes);
    });
}

TEST_P(VectorRows, MasksAreSearched)
{
    everyWidth([&](int width) {
        Row mask = row((size_t)width * 3);
        const int length = dice.between(1, 40);
        for (int x = 0; x < width; ++x)
            if (x / length % 2 == 0) mask.at((size_t)x * 3 + 2) = 0;
        for (int from = 0; from < width; from += dice.between(1, 9))
            for (bool inside : {true, false}) {
                int expected = from;
                while (expected < width && (mask.at((size_t)expected * 3 + 2) == 0) != inside)
                    ++expected;
                ASSERT_EQ(expected, pixelRows().findMask(mask.begin(), from, width, inside)) << from;
            }
    });
}

TEST_P(VectorRows, MasksBecomeBitsAndBack)
{
    everyWidth([&](int width) {
        const size_t byteCount = (size_t)(width + 7) / 8;
        Row mask = row((size_t)width * 3), bits = row(byteCount), expected = bits;
        std::fill_n(expected.begin(), byteCount, (uint8_t)0);
        const int length = dice.between(1, 40);
        for (int x = 0; x < width; ++x) {
            const bool outside = x / length % 2 == dice.upTo(20) / 20;
            std::fill_n(mask.begin() + x * 3, 3, (uint8_t)(outside ? 255 : 0));
            if (outside) expected.at((size_t)x / 8) |= (uint8_t)(128 >> x % 8);
        }
        packMaskRow(bits.begin(), mask.begin(), (size_t)width);
        ASSERT_EQ(expected.bytes, bits.bytes);
        Row back = row((size_t)width * 3), whole = back;
        std::copy_n(mask.begin(), (size_t)width * 3, whole.begin());
        unpackMaskRow(back.begin(), bits.begin(), (size_t)width);
        ASSERT_EQ(whole.bytes, back.bytes);
    });
}

// Rows that begin anywhere, of bitmaps whose rows lie any number of bytes apart.
TEST_P(VectorRows, RowsAreScaled)
{
    everyWidth([&](int width) {
        const int sourceWidth = dice.between(1, width * 4);
        const reference::Picture source = randomPicture(dice, sourceWidth, 1);
        const reference::Picture scaled = referenceScale(source, width, 1);
        Row from = row((size_t)sourceWidth * 3), to = row((size_t)width * 3), expected = to;
        const std::vector<uint8_t> sourceBytes = storedRows(source, 0), scaledBytes = storedRows(scaled, 0);
        std::copy_n(sourceBytes.begin(), (size_t)sourceWidth * 3, from.begin());
        std::copy_n(scaledBytes.begin(), (size_t)width * 3, expected.begin());
        ASSERT_TRUE(scaleNearest({to.begin(), width * 3, width, 1}, {from.begin(), sourceWidth * 3, sourceWidth, 1}));
        ASSERT_EQ(expected.bytes, to.bytes) << sourceWidth;
    });
}

TEST_P(VectorRows, BytesAreMixed)
{
    everyWidth([&](int width) {
        const size_t count = (size_t)dice.between(width, width * 3);
        const int opacity = dice.upTo(100);
        Row pixels = row(count), over = row(count), expected = pixels;
        for (size_t n = 0; n < count; ++n)
            expected.at(n) = mixed(pixels.at(n), over.at(n), opacity);
        paintRows().mixBytes(pixels.begin(), over.begin(), count, opacity);
        ASSERT_EQ(expected.bytes, pixels.bytes) << opacity;
    });
}

TEST_P(VectorRows, FreshPixelsAreMixed)
{
    everyWidth([&](int width) {
        const int opacity = dice.upTo(100);
        const Rgb colour = {(uint8_t)dice.upTo(255), (uint8_t)dice.upTo(255), (uint8_t)dice.upTo(255)};
        const int over[] = {colour.blue, colour.green, colour.red};
        Row pixels = row((size_t)width * 3), covered = cells(width, dice.upTo(10), 100);
        Row expected = pixels, expectedCells = covered;
        for (size_t n = 0; n < (size_t)width; ++n) {
            if (covered.at(n)) continue;
            expectedCells.at(n) = 1;
            for (size_t c = 0; c < 3; ++c)
                expected.at(n * 3 + c) = mixed(pixels.at(n * 3 + c), over[c], opacity);
        }
        paintRows().mixFresh(pixels.begin(), covered.begin(), width, colourRow(colour), opacity);
        ASSERT_EQ(expected.bytes, pixels.bytes) << opacity;
        ASSERT_EQ(expectedCells.bytes, covered.bytes) << opacity;
    });
}

TEST_P(VectorRows, WeightsAreRaised)
{
    everyWidth([&](int width) {
        const Rgb colour = {(uint8_t)dice.upTo(255), (uint8_t)dice.upTo(255), (uint8_t)dice.upTo(255)};
        const int over[] = {colour.blue, colour.green, colour.red};
        Row pixels = row((size_t)width * 3), under = row((size_t)width * 3);
        Row covered = cells(width, dice.upTo(10), 100), weights = cells(width, dice.upTo(10), 100);
        for (size_t k = 0; k < (size_t)width * 3; ++k)
            if (!covered.at(k / 3)) pixels.at(k) = under.at(k);
        Row expected = pixels, expectedCells = covered;
        for (size_t n = 0; n < (size_t)width; ++n) {
            if (weights.at(n) <= covered.at(n)) continue;
            expectedCells.at(n) = weights.at(n);
            for (size_t c = 0; c < 3; ++c)
                expected.at(n * 3 + c) = mixed(under.at(n * 3 + c), over[c], weights.at(n));
        }
        paintRows().raise(pixels.begin(), under.begin(), covered.begin(), weights.begin(), width, colourRow(colour));
        ASSERT_EQ(expected.bytes, pixels.bytes);
        ASSERT_EQ(expectedCells.bytes, covered.bytes);
    });
}

// Three lines with a pixel more to either side. In which order the sums lie is the variant's own affair.
TEST_P(VectorRows, LinesAreBlurred)
{
    everyWidth([&](int width) {
        const size_t count = (size_t)width * 3;
        const int opacity = dice.upTo(100);
        Row lines[] = {row(count + 6), row(count + 6), row(count + 6)}, mask = cells(width, dice.upTo(10), 255);
        std::vector<uint16_t> sums[2];
        for (int k = 0; k < 2; ++k) {
            sums[k].resize(roomForSums(count));
            paintRows().sumLine(sums[k].data(), lines[k].begin() + 3, count);
        }
        Row expected = lines[1];
        for (size_t n = 0; n < count; ++n) {
            int sum = 8;
            for (int k = 0; k < 3; ++k)
                sum += (k == 1 ? 2 : 1) * (lines[k].at(n) + 2 * lines[k].at(n + 3) + lines[k].at(n + 6));
            if (mask.at(n / 3)) expected.at(n + 3) = mixed(lines[1].at(n + 3), sum / 16, opacity);
        }
        paintRows().blurLine(lines[1].begin() + 3, lines[2].begin() + 3, {sums[0].data(), sums[1].data()}, mask.begin(),
                             width, opacity);
        ASSERT_EQ(expected.bytes, lines[1].bytes) << opacity;
    });
}

TEST_P(VectorRows, ColoursAreAdjusted)
{
    const reference::Values cases[] = {{-20, -10, 50, 0, 0}, {0, 0, 35, 20, 0}, {37, -42, 77, -64, 0}};
    everyWidth([&](int width) {
        for (const reference::Values& values : cases) {
            Row from = row((size_t)width * 3), to = row((size_t)width * 3), expected = to;
            for (size_t n = 0; n < (size_t)width * 3; n += 3) {
                const reference::Colour out =
                    reference::adjustedForImage({from.at(n + 2), from.at(n + 1), from.at(n)}, values);
                expected.at(n) = (uint8_t)out.blue;
                expected.at(n + 1) = (uint8_t)out.green;
                expected.at(n + 2) = (uint8_t)out.red;
            }
            const ColourAdjustment adjustment =
                imageAdjustment({values.contrast, values.brightness, values.saturation, values.hue, values.lift});
            adjustPixels(adjustment, from.begin(), to.begin(), (size_t)width);
            ASSERT_EQ(expected.bytes, to.bytes);
            Row inPlace = from;
            adjustPixels(adjustment, inPlace.begin(), inPlace.begin(), (size_t)width);
            ASSERT_TRUE(std::equal(inPlace.begin(), inPlace.begin() + width * 3, to.begin()));
            ASSERT_TRUE(std::equal(from.bytes.end() - GUARD / 2, from.bytes.end(), inPlace.bytes.end() - GUARD / 2));
        }
    });
}
