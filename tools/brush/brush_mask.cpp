#include "tools/brush/brush_mask.h"

#include "image/bitmap_locks.h"
#include "image/kept_blocks.h"
#include "image/packed_bitmap.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "tools/kernels/brush_raster.h"

static bool fits(int width, int height)
{
    const BrushMaskKey& key = sessionExtras.brushMaskKey;
    return session->brushMask && key.mask == session->brushMask && key.width == width && key.height == height &&
           key.shape == session->brushShape;
}

int buildBrushMask(int width, int height)
{
    const bool doubled = session->currentTool == TOOL_AEROGRAPHE && session->edgeMode == EDGE_SMOOTH;
    session->maskScale = doubled ? 2 : 1;
    const int maskWidth = width * (int)session->maskScale, maskHeight = height * (int)session->maskScale;
    if (fits(maskWidth, maskHeight)) return 1;

    releaseBlock(session->brushMask);
    session->brushMask = createBitmap(maskWidth, maskHeight, 8);
    const LockedMap mask(session->brushMask);
    if (!mask) return 0;
    rasteriseBrush(mask.view, session->brushShape);
    sessionExtras.brushMaskKey = {session->brushMask, maskWidth, maskHeight, session->brushShape};
    return 1;
}
