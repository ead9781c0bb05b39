#include "tools/kernels/dab_placement.h"

#include <algorithm>
#include <cstdint>

#include "image/pixels/fetch_ahead.h"

PixelRect dabRect(PixelPoint centre, int brushWidth, int brushHeight, int scale)
{
    const int left = centre.x - brushWidth / 2 * scale, top = centre.y - brushHeight / 2 * scale;
    return PixelRect{left, top, left + brushWidth * scale, top + brushHeight * scale};
}

// One axis of the placement. size 0: nothing visible.
struct AxisPlacement {
    int image;     // first pixel
    int mask;      // first mask cell
    int size;      // pixels inside the image
    int ruleSize;  // visible size by the rule
};

static AxisPlacement placeAxis(int start, int maskSize, int imageSize)
{
    const int64_t end = (int64_t)start + maskSize;
    if (end < 1 || start >= imageSize) return AxisPlacement{};
    const int64_t overhang = std::max<int64_t>(end - imageSize, 0);
    const int ruleSize = (int)(start >= 0 ? maskSize - overhang : end);
    if (ruleSize < 1) return AxisPlacement{};
    const int image = std::max(start, 0);
    return AxisPlacement{image, end <= imageSize ? maskSize - ruleSize : 0, std::min(ruleSize, imageSize - image),
                         ruleSize};
}

DabPlacement placeDab(PixelRect dab, int maskWidth, int maskHeight, int imageWidth, int imageHeight)
{
    DabPlacement placed = {};
    placed.clamped = PixelRect{std::max(dab.left, 0), std::max(dab.top, 0), std::min(dab.right, imageWidth),
                               std::min(dab.bottom, imageHeight)};
    const AxisPlacement x = placeAxis(dab.left, maskWidth, imageWidth);
    const AxisPlacement y = placeAxis(dab.top, maskHeight, imageHeight);
    if (x.size == 0 || y.size == 0) return placed;
    placed.visible = true;
    placed.left = dab.left;
    placed.top = dab.top;
    placed.imageX = x.image;
    placed.imageY = y.image;
    placed.width = x.size;
    placed.height = y.size;
    placed.maskX = x.mask;
    placed.maskY = y.mask;
    placed.ruleWidth = x.ruleSize;
    placed.ruleHeight = y.ruleSize;
    return placed;
}

void fetchDabLine(const BitsView& image, const DabPlacement& dab, int j)
{
    if (j >= dab.height) return;
    fetchAhead(rowOf(image, dab.imageY + j) + (ptrdiff_t)dab.imageX * 3, (size_t)dab.width * 3);
}
