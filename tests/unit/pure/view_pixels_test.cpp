// The pixels of a zoomed canvas, each held against the pixel that its point hits.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "canvas/view/view_pixels.h"
#include "tests/unit/pure/guarded_image.h"

struct ViewPixels {
    std::vector<uint8_t> bytes;
    BitsView view;
};

// Rows in memory from the top or, as stored images have them, from the bottom.
static ViewPixels noise(Dice& dice, int width, int height, bool bottomUp)
{
    const ptrdiff_t stride = (ptrdiff_t)rowStride(width, 24);
    ViewPixels pixels = {std::vector<uint8_t>((size_t)(stride * height)), {}};
    for (uint8_t& byte : pixels.bytes)
        byte = (uint8_t)dice.next();
    uint8_t* const first = pixels.bytes.data();
    pixels.view = {bottomUp ? first + stride * (height - 1) : first, bottomUp ? -stride : stride, width, height};
    return pixels;
}

struct Scene {
    CanvasView view;
    ViewPixels picture, before;
    PixelPoint corner;
};

static Scene someScene(Dice& dice)
{
    Scene scene = {};
    scene.view =
        resizedView({}, {dice.between(10, 70), dice.between(10, 70)}, {dice.between(300, 400), dice.between(300, 400)});
    for (int steps = dice.between(1, ZOOM_STEP_COUNT); steps > 0; --steps)
        scene.view = steppedAboutCentre(scene.view, 1);
    scene.view = pannedView(scene.view, dice.between(-5000, 5000), dice.between(-5000, 5000));
    scene.corner = {dice.upTo(9), dice.upTo(9)};
    scene.picture = noise(dice, dice.between(1, scene.view.client.width - scene.corner.x),
                          dice.between(1, scene.view.client.height - scene.corner.y), false);
    scene.before = scene.picture;
    return scene;
}

static ViewPicture pictureOf(Scene& scene)
{
    return {scene.picture.view, scene.corner};
}

static const uint8_t* pixelOf(const BitsView& view, int x, int y)
{
    return view.row0 + view.stride * y + 3 * x;
}

// Calls check(x, y of the picture, pixel of the layer or off it).
template <typename Check>
static void forEachPixel(const Scene& scene, PixelPoint at, const Check& check)
{
    for (int y = 0; y < scene.picture.view.height; ++y) {
        for (int x = 0; x < scene.picture.view.width; ++x) {
            const PixelPoint hit = imagePointAt(scene.view, {scene.corner.x + x, scene.corner.y + y});
            check(x, y, PixelPoint{hit.x - at.x, hit.y - at.y});
        }
    }
}

static bool lies(PixelPoint point, int width, int height)
{
    return point.x >= 0 && point.x < width && point.y >= 0 && point.y < height;
}

static void expectSame(const uint8_t* expected, const uint8_t* actual)
{
    ASSERT_EQ(0, memcmp(expected, actual, 3));
}

static const uint8_t* oldPixel(const Scene& scene, int x, int y)
{
    return scene.before.bytes.data() + scene.before.view.stride * y + 3 * x;
}

TEST(ViewPixels, EachScreenPixelShowsThePixelThatItHits)
{
    Dice dice = {31};
    for (int round = 0; round < 400; ++round) {
        Scene scene = someScene(dice);
        const ViewPixels image = noise(dice, scene.view.image.width, scene.view.image.height, true);
        showPixels(pictureOf(scene), scene.view, image.view, {0, 0});
        forEachPixel(scene, {0, 0}, [&](int x, int y, PixelPoint hit) {
            expectSame(pixelOf(image.view, hit.x, hit.y), pixelOf(scene.picture.view, x, y));
        });
        if (testing::Test::HasFatalFailure()) return;
    }
}

// Wider than what is laid out at a time, at every scale, and to the last byte of picture and image.
TEST(ViewPixels, AWideCanvasShowsThePixelsThatItHits)
{
    Dice dice = {35};
    for (int step = 1; step <= ZOOM_STEP_COUNT; ++step) {
        Scene scene = {};
        scene.view = resizedView({}, {2600, 3}, {11000, 14});
        for (int i = 0; i < step; ++i)
            scene.view = steppedAboutCentre(scene.view, 1);
        scene.view = pannedView(scene.view, dice.between(-9, 1000000), dice.between(-99, 99));
        scene.picture = noise(dice, 2600 - step, 3, false);
        const ViewPixels image = noise(dice, scene.view.image.width, scene.view.image.height, true);
        showPixels(pictureOf(scene), scene.view, image.view, {0, 0});
        forEachPixel(scene, {0, 0}, [&](int x, int y, PixelPoint hit) {
            expectSame(pixelOf(image.view, hit.x, hit.y), pixelOf(scene.picture.view, x, y));
        });
        ASSERT_EQ(step, scene.view.zoomStep);
        if (testing::Test::HasFatalFailure()) return;
    }
}

TEST(ViewPixels, ALayerLeavesWhatItDoesNotReach)
{
    Dice dice = {32};
    for (int round = 0; round < 400; ++round) {
        Scene scene = someScene(dice);
        const ViewPixels layer = noise(dice, dice.between(1, 90), dice.between(1, 90), round % 2);
        const PixelPoint at = imagePointAt(scene.view, {dice.between(-40, 60), dice.between(-40, 60)});
        showPixels(pictureOf(scene), scene.view, layer.view, at);
        forEachPixel(scene, at, [&](int x, int y, PixelPoint hit) {
            const bool reached = lies(hit, layer.view.width, layer.view.height);
            expectSame(reached ? pixelOf(layer.view, hit.x, hit.y) : oldPixel(scene, x, y),
                       pixelOf(scene.picture.view, x, y));
        });
        if (testing::Test::HasFatalFailure()) return;
    }
}

TEST(ViewPixels, AMaskedLayerShowsWhereTheMaskIsBlack)
{
    Dice dice = {33};
    for (int round = 0; round < 400; ++round) {
        Scene scene = someScene(dice);
        const ViewPixels layer = noise(dice, dice.between(1, 90), dice.between(1, 90), true);
        ViewPixels mask = noise(dice, layer.view.width, layer.view.height, true);
        for (uint8_t& byte : mask.bytes)
            byte = byte & 1 ? 255 : 0;
        const PixelPoint at = imagePointAt(scene.view, {dice.between(-40, 60), dice.between(-40, 60)});
        showMaskedPixels(pictureOf(scene), scene.view, layer.view, mask.view, at);
        forEachPixel(scene, at, [&](int x, int y, PixelPoint hit) {
            const bool shown =
                lies(hit, layer.view.width, layer.view.height) && pixelOf(mask.view, hit.x, hit.y)[2] == 0;
            expectSame(shown ? pixelOf(layer.view, hit.x, hit.y) : oldPixel(scene, x, y),
                       pixelOf(scene.picture.view, x, y));
        });
        if (testing::Test::HasFatalFailure()) return;
    }
}

TEST(ViewPixels, OnesTakeTheColour)
{
    Dice dice = {34};
    const uint8_t colour[] = {10, 20, 30};
    for (int round = 0; round < 400; ++round) {
        Scene scene = someScene(dice);
        const int width = dice.between(1, 90), height = dice.between(1, 40), stride = (width + 31) / 32 * 4;
        std::vector<uint8_t> bits((size_t)(stride * height));
        for (uint8_t& byte : bits)
            byte = (uint8_t)dice.next();
        const PixelPoint at = imagePointAt(scene.view, {dice.between(-40, 60), dice.between(-40, 60)});
        showOnes(pictureOf(scene), scene.view, {bits.data(), stride, width, height}, at, {30, 20, 10});
        forEachPixel(scene, at, [&](int x, int y, PixelPoint hit) {
            const bool one =
                lies(hit, width, height) && (bits[(size_t)(stride * hit.y + hit.x / 8)] >> (7 - hit.x % 8) & 1);
            expectSame(one ? colour : oldPixel(scene, x, y), pixelOf(scene.picture.view, x, y));
        });
        if (testing::Test::HasFatalFailure()) return;
    }
}
