#include "tools/brush/brush_mask.h"

#include "image/bitmap_block.h"
#include "image/packed_bitmap.h"
#include "session/ground/session_record.h"
#include "tools/kernels/brush_raster.h"

// What the present mask was made for; a mask that fits is kept.
struct MaskKey {
    HGLOBAL handle;
    int width, height;
    uint32_t shape;
};
static MaskKey madeFor;

static bool fits(int width, int height)
{
    return session->brushMask && madeFor.handle == session->brushMask && madeFor.width == width &&
           madeFor.height == height && madeFor.shape == session->brushShape;
}

int buildBrushMask(int width, int height)
{
    const bool doubled = session->currentTool == TOOL_AEROGRAPHE && session->edgeMode == EDGE_SMOOTH;
    session->maskScale = doubled ? 2 : 1;
    const int maskWidth = width * (int)session->maskScale, maskHeight = height * (int)session->maskScale;
    if (fits(maskWidth, maskHeight)) return 1;

    if (session->brushMask) GlobalFree(session->brushMask);
    session->brushMask = createBitmap(maskWidth, maskHeight, 8);
    BitmapBlock block;
    MapView mask;
    if (!lockMap(session->brushMask, &block, &mask)) return 0;
    rasteriseBrush(mask, session->brushShape);
    unlockBlock(block);
    madeFor = {session->brushMask, maskWidth, maskHeight, session->brushShape};
    return 1;
}
