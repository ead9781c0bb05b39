#include "canvas/view/map_layout.h"

#include <algorithm>

constexpr int SMALLEST = 8;   // with less room for each side there is no map
constexpr int MARGIN = 6;     // to the canvas's borders
constexpr int NEARNESS = 24;  // the pointer makes the map hop from this far
constexpr int SAMPLES = 3;    // a thumbnail pixel takes so many across and down

// The longer side as long as allowed, the other in proportion.
static ViewSize mapInsideSize(const CanvasView& view)
{
    const int64_t width = view.client.width / 4 - 2, height = view.client.height / 4 - 2;
    if (width < SMALLEST || height < SMALLEST || view.image.width < 1 || view.image.height < 1) return {0, 0};
    const int64_t across = std::max<int64_t>(1, height * view.image.width / view.image.height);
    const int64_t down = std::max<int64_t>(1, width * view.image.height / view.image.width);
    return across <= width ? ViewSize{(int)across, (int)height} : ViewSize{(int)width, (int)down};
}

PixelRect mapRect(const CanvasView& view, bool onLeft)
{
    const ViewSize inside = mapInsideSize(view);
    if (inside.width < 1) return {0, 0, 0, 0};
    const int width = inside.width + 2, height = inside.height + 2;
    const int left = onLeft ? MARGIN : view.client.width - MARGIN - width;
    const int top = view.client.height - MARGIN - height;
    return {left, top, left + width, top + height};
}

bool mapGivesWay(const CanvasView& view, PixelPoint pointer)
{
    const PixelRect map = mapRect(view, false);
    return map.left < map.right && pointer.x >= map.left - NEARNESS && pointer.x < map.right + NEARNESS &&
           pointer.y >= map.top - NEARNESS && pointer.y < map.bottom + NEARNESS;
}

PixelRect mapInside(const PixelRect& map)
{
    return {map.left + 1, map.top + 1, map.right - 1, map.bottom - 1};
}

static int scaled(int value, int from, int to)
{
    return (int)((int64_t)value * to / from);
}

PixelRect mapFrame(const CanvasView& view, const PixelRect& inside)
{
    const PixelRect seen = imageCover(view, {0, 0, view.client.width, view.client.height});
    const int width = inside.right - inside.left, height = inside.bottom - inside.top;
    const int left = std::min(scaled(seen.left, view.image.width, width), width - 1);
    const int top = std::min(scaled(seen.top, view.image.height, height), height - 1);
    const int right = std::max(scaled(seen.right, view.image.width, width), left + 1);
    const int bottom = std::max(scaled(seen.bottom, view.image.height, height), top + 1);
    return {inside.left + left, inside.top + top, inside.left + std::min(right, width),
            inside.top + std::min(bottom, height)};
}

static int samplePlace(int pixel, int sample, int pixels, int imagePixels)
{
    const int64_t place = 2 * ((int64_t)pixel * SAMPLES + sample) + 1;
    return (int)(place * imagePixels / (2 * (int64_t)pixels * SAMPLES));
}

static void samplePixel(const BitsView& thumbnail, const BitsView& image, int x, int y)
{
    int sums[3] = {0, 0, 0};
    for (int down = 0; down < SAMPLES; ++down) {
        const uint8_t* const row = rowOf(image, samplePlace(y, down, thumbnail.height, image.height));
        for (int across = 0; across < SAMPLES; ++across) {
            const uint8_t* const pixel = row + 3 * (ptrdiff_t)samplePlace(x, across, thumbnail.width, image.width);
            for (int i = 0; i < 3; ++i)
                sums[i] += pixel[i];
        }
    }
    uint8_t* const to = rowOf(thumbnail, y) + 3 * x;
    for (int i = 0; i < 3; ++i)
        to[i] = (uint8_t)(sums[i] / (SAMPLES * SAMPLES));
}

static int clamped(int64_t value, int limit)
{
    return (int)std::max<int64_t>(0, std::min<int64_t>(value, limit));
}

void renewThumbnail(const BitsView& thumbnail, const BitsView& image, const PixelRect& part)
{
    const int width = thumbnail.width, height = thumbnail.height;
    const int left = clamped((int64_t)part.left * width / image.width - 1, width);
    const int top = clamped((int64_t)part.top * height / image.height - 1, height);
    const int right = clamped((int64_t)part.right * width / image.width + 2, width);
    const int bottom = clamped((int64_t)part.bottom * height / image.height + 2, height);
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            samplePixel(thumbnail, image, x, y);
}
