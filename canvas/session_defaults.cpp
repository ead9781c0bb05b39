#include "canvas/session_defaults.h"

#include <cstring>

#include "image/kept_blocks.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

static LOGFONTA defaultFont()
{
    LOGFONTA font = {};
    font.lfHeight = 20;
    font.lfWeight = FW_BOLD;
    font.lfQuality = PROOF_QUALITY;
    font.lfPitchAndFamily = VARIABLE_PITCH | FF_SWISS;
    strcpy(font.lfFaceName, "Arial");
    return font;
}

void writeSessionDefaults()
{
    releaseKeptBlocks();
    sessionExtras = {};
    session->overlayHideCount = -1;
    session->overlayEnabled = 1;
    session->currentTool = TOOL_NONE;
    session->textFont = defaultFont();
    for (int slot = 0; slot < TOOL_COUNT; ++slot)
        session->toolSettings[slot] = toolInSlot(slot).start;
    const ToolSettings& brush = findTool(TOOL_BRUSH)->start;
    session->brushWidth = brush.width;
    session->brushHeight = brush.height;
    session->brushShape = brush.shape;
    session->edgeMode = brush.edge;
    session->paintColour = brush.colour;
    session->opacity = brush.opacity;
}
