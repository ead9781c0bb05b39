#include "tools/stroke_kernels.h"

#include "tools/brush_kernels.h"
#include "tools/digital_line.h"

static void layBrush(const BrushStroke& stroke, PixelPoint at)
{
    const PixelRect rect = dabRect(at, stroke.mask.width, stroke.mask.height, 1);
    const DabPlacement dab =
        placeDab(rect, stroke.mask.width, stroke.mask.height, stroke.image.width, stroke.image.height);
    if (stroke.soft)
        softBrushKernel(stroke.image, stroke.start, dab, stroke.mask, stroke.coverage, stroke.colour, stroke.opacity);
    else
        hardBrushKernel(stroke.image, dab, stroke.mask, stroke.coverage, stroke.colour, stroke.opacity);
}

bool paintBrushSegment(const BrushStroke& stroke, PixelPoint from, PixelPoint to)
{
    DigitalLine line = beginLine(from, to);
    do
        layBrush(stroke, PixelPoint{line.x, line.y});
    while (nextPoint(line));
    return true;
}
