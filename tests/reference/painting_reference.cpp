#include "tests/reference/painting_reference.h"

#include <cmath>
#include <cstdlib>

namespace reference {

Grid brushGrid(int width, int height, int shape)
{
    Grid grid = {width, height, std::vector<int>((size_t)width * height, 0)};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (width < 3 || height < 3) {
                grid.at(x, y) = 1;
                continue;
            }
            if (x == width - 1 || y == 0) continue;  // the empty column and, after mirroring, the empty top line
            const int drawnRow = height - 1 - y;
            // Doubled distances from the middle of the box less its last column and row.
            const long long u = std::llabs(2LL * x + 1 - (width - 1)),
                            v = std::llabs(2LL * drawnRow + 1 - (height - 1));
            const long long uu = u * u, vv = v * v, rx = (width - 1LL) * (width - 1),
                            ry = (height - 1LL) * (height - 1);
            if (shape == 1 || (shape == 0 && uu * ry + vv * rx <= rx * ry)) grid.at(x, y) = 1;
        }
    }
    return grid;
}

struct Extent {
    int visible, maskStart, imageStart;
};

static Extent extentOf(int start, int maskSize, int imageSize)
{
    const int end = start + maskSize;
    if (end < 1 || start >= imageSize) return {0, 0, 0};
    int visible = maskSize;
    if (start < 0)
        visible = maskSize + start;
    else if (end > imageSize)
        visible = maskSize - (end - imageSize);
    return {visible, end <= imageSize ? maskSize - visible : 0, start < 1 ? 0 : start};
}

static int blend(int under, int over, int opacity)
{
    if (opacity == 100) return over;
    return (under * (100 - opacity) + over * opacity) / 100;
}

static Pixel blend(Pixel under, Pixel over, int opacity)
{
    return {blend(under.blue, over.blue, opacity), blend(under.green, over.green, opacity),
            blend(under.red, over.red, opacity)};
}

static int blendReal(int under, int over, double weight)
{
    return (int)((under * (100 - weight) + over * weight) / 100.0);
}

static Pixel blendReal(Pixel under, Pixel over, double weight)
{
    return {blendReal(under.blue, over.blue, weight), blendReal(under.green, over.green, weight),
            blendReal(under.red, over.red, weight)};
}

static int middleDistance(int index, int size)
{
    const int half = size / 2;
    return index < half ? index - half + 1 : index - half;
}

// d / AB for a pixel of a visible dab of vw x vh; negative when the dab has no soft edge to compute.
static double rimFraction(int i, int j, int vw, int vh)
{
    const double a = vw / 2.0 - 1.0, b = vh / 2.0 - 1.0;
    const double A = a * a, B = b * b, AB = A * B;
    if (AB == 0) return -1;
    const int dx = middleDistance(i, vw), dy = middleDistance(j, vh);
    double d = dx * dx * B + dy * dy * A;
    if (d > AB) d = AB;
    return d / AB;
}

static int blurChannel(const Picture& from, int x, int y, int Pixel::*channel)
{
    static const int weights[3][3] = {{1, 2, 1}, {2, 4, 2}, {1, 2, 1}};
    int sum = 8;
    for (int v = -1; v <= 1; ++v)
        for (int u = -1; u <= 1; ++u)
            sum += weights[v + 1][u + 1] * (from.at(x + u, y + v).*channel);
    return sum >> 4;
}

// The original cut out under the brush's rectangle: black outside the image.
static Pixel underTheBrush(const Picture& original, int x, int y)
{
    const bool inside = x >= 0 && y >= 0 && x < original.width && y < original.height;
    return inside ? original.at(x, y) : Pixel{0, 0, 0};
}

static void layPixel(Scene& scene, const Dab& dab, int x, int y, int maskX, int maskY, double fraction)
{
    Pixel& pixel = scene.image.at(x, y);
    switch (dab.tool) {
    case BRUSH: {
        int& covered = scene.coverage.at(x, y);
        if (!dab.soft) {
            if (covered == 0) pixel = blend(pixel, dab.colour, dab.opacity);
            covered = covered == 0 ? 1 : covered;
            return;
        }
        const int weight = (int)(dab.opacity * (1 - fraction * fraction * fraction));
        if (weight < covered) return;
        pixel = blend(scene.strokeStart.at(x, y), dab.colour, weight);
        covered = weight;
        return;
    }
    case PATCH:
        if (maskX < scene.patch.width && maskY < scene.patch.height)
            pixel = blend(pixel, scene.patch.at(maskX, maskY), dab.opacity);
        return;
    case RUBBER: {
        const Pixel original = underTheBrush(scene.original, dab.left + maskX, dab.top + maskY);
        pixel =
            dab.soft ? blendReal(pixel, original, dab.opacity * (1 - fraction)) : blend(pixel, original, dab.opacity);
        return;
    }
    case SPRAY:
        pixel = dab.soft ? blendReal(pixel, dab.colour, dab.opacity * (1 - std::sqrt(fraction)))
                         : blend(pixel, dab.colour, dab.opacity);
        return;
    case SMOOTH: return;
    }
}

static void laySmooth(Scene& scene, const Dab& dab, const Grid& mask, Extent across, Extent down)
{
    const Picture before = scene.image;
    for (int j = 1; j < down.visible - 2; ++j) {
        for (int i = 1; i < across.visible - 1; ++i) {
            const int x = across.imageStart + i, y = down.imageStart + j;
            if (x + 1 >= before.width || y + 1 >= before.height) continue;  // needs a pixel outside the image
            if (!mask.at(across.maskStart + i - 1, down.maskStart + j - 1)) continue;
            const Pixel blurred = {blurChannel(before, x, y, &Pixel::blue), blurChannel(before, x, y, &Pixel::green),
                                   blurChannel(before, x, y, &Pixel::red)};
            scene.image.at(x, y) = blend(before.at(x, y), blurred, dab.opacity);
        }
    }
}

void layDab(Scene& scene, const Dab& dab, const Grid& mask)
{
    const Extent across = extentOf(dab.left, mask.width, scene.image.width);
    const Extent down = extentOf(dab.top, mask.height, scene.image.height);
    if (dab.tool == SMOOTH) {
        laySmooth(scene, dab, mask, across, down);
        return;
    }
    for (int j = 0; j < down.visible; ++j) {
        for (int i = 0; i < across.visible; ++i) {
            const int x = across.imageStart + i, y = down.imageStart + j;
            if (x >= scene.image.width || y >= scene.image.height) continue;
            if (!mask.at(across.maskStart + i, down.maskStart + j)) continue;
            const double fraction = dab.soft && dab.tool != PATCH ? rimFraction(i, j, across.visible, down.visible) : 0;
            if (fraction < 0) continue;
            layPixel(scene, dab, x, y, across.maskStart + i, down.maskStart + j, fraction);
        }
    }
}

std::vector<std::pair<int, int>> linePoints(int x0, int y0, int x1, int y1)
{
    const long long dx = (long long)x1 - x0, dy = (long long)y1 - y0;
    const long long steps = std::llabs(dx) > std::llabs(dy) ? std::llabs(dx) : std::llabs(dy);
    std::vector<std::pair<int, int>> points;
    for (long long k = 0; k <= steps; ++k) {
        // Offset rounded to the nearest whole number, halves away from zero.
        const auto offset = [&](long long d) {
            if (steps == 0) return 0LL;
            const long long whole = (2 * std::llabs(d) * k + steps) / (2 * steps);
            return d < 0 ? -whole : whole;
        };
        points.emplace_back((int)(x0 + offset(dx)), (int)(y0 + offset(dy)));
    }
    return points;
}

}  // namespace reference
