#include "canvas/colour_pick.h"

#include "image/packed_bitmap.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "tools/brush/brush_preview.h"

static COLORREF colourUnder(POINT at)
{
    COLORREF colour;
    return getPixelColour(editedImage(), at.x, at.y, &colour) ? colour : session->previousColour;
}

void pickColourAtPress(POINT at)
{
    session->previousColour = session->paintColour;
    session->paintColour = colourUnder(at);
    invalidateBrushPreview();
}

void pickColourAtMove(POINT at)
{
    const COLORREF colour = colourUnder(at);
    if (colour == session->paintColour) return;
    session->paintColour = colour;
    invalidateBrushPreview();
}
