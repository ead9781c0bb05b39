#include "bench/outline_shapes.h"

#include "bench/synthetic.h"

static const OutlineShape shapes[OUTLINE_SIZES] = {
    {1008, {1500, 700}, 250, 250, false},     {10070, {1500, 700}, 790, 790, false},
    {20020, {1500, 700}, 1114, 1114, false},  {100800, {1500, 700}, 2500, 2500, false},
    {200200, {1500, 300}, 3523, 3523, false}, {1008, {1500, 300}, 500, 400, true},
    {8608, {300, 300}, 4300, 3500, true},
};

const OutlineShape& outlineShape(int size)
{
    return shapes[size];
}

static PixelPoint at(const OutlineShape& shape, int x, int y)
{
    return {shape.corner.x + x, shape.corner.y + y};
}

static void drawToAndFro(Outline& outline, const OutlineShape& shape)
{
    const uint32_t side = (uint32_t)shape.width;
    for (uint32_t n = 0; outline.pointCount < shape.points; ++n)
        extendOutline(outline, at(shape, (int)(hashPoint(n, 1, 5) % side), (int)(hashPoint(n, 2, 5) % side)));
}

static void drawStrip(Outline& outline, const OutlineShape& shape)
{
    extendOutline(outline, at(shape, shape.width - 4, shape.height));
    extendOutline(outline, at(shape, shape.width, shape.height));
    extendOutline(outline, at(shape, 4, 0));
}

Outline makeOutline(const OutlineShape& shape)
{
    Outline outline = {};
    if (!startOutline(outline, 4000, shape.corner)) return outline;
    (shape.thin ? drawStrip : drawToAndFro)(outline, shape);
    closeOutline(outline, outline.last);
    return outline;
}
