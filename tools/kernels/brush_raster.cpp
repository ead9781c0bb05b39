#include "tools/kernels/brush_raster.h"

#include <cstring>

#include "session/ground/tool_table.h"

// Centre of cell (x, y) in or on the ellipse inscribed in a box of w x h cells; all lengths doubled,
// so that the half cells are whole numbers.
static bool insideEllipse(int64_t x, int64_t y, int64_t w, int64_t h)
{
    const int64_t dx = (2 * x + 1 - w) * h, dy = (2 * y + 1 - h) * w;
    return dx * dx + dy * dy <= w * h * w * h;
}

static void drawShapeRow(uint8_t* cells, int y, int w, int h, uint32_t shape)
{
    for (int x = 0; x < w; ++x)
        cells[x] = shape == SHAPE_RECTANGLE || (shape == SHAPE_CIRCLE && insideEllipse(x, y, w, h));
}

void rasteriseBrush(MapView mask, uint32_t shape)
{
    const bool thin = mask.width < 3 || mask.height < 3;
    const int w = mask.width - 1, h = mask.height - 1;
    for (int y = 0; y < mask.height; ++y) {
        uint8_t* cells = rowOf(mask, mask.height - 1 - y);
        memset(cells, thin, mask.width);
        if (!thin && y < h) drawShapeRow(cells, y, w, h, shape);
    }
}
