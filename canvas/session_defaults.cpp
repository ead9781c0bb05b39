#include "canvas/session_defaults.h"

#include <cstring>

#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

constexpr uint32_t DEFAULT_BRUSH_SIZE = 16;
constexpr COLORREF DEFAULT_COLOUR = 0x00C0C0FF;
constexpr uint32_t DEFAULT_OPACITY = 100;

static ToolSettings defaultSettings(ToolId tool)
{
    ToolSettings settings = {tool, SHAPE_CIRCLE,   EDGE_FULL,      1, DEFAULT_BRUSH_SIZE, DEFAULT_BRUSH_SIZE, 0, 1, 1,
                             1,    DEFAULT_COLOUR, DEFAULT_OPACITY};
    if (tool == TOOL_SELECTION || tool == TOOL_CONTRAST || tool == TOOL_TEXT) settings.showOutline = 0;
    if (tool == TOOL_TEXT) settings.lockLH = settings.widthEnabled = 0;
    return settings;
}

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
    sessionExtras = {};
    session->brushWidth = session->brushHeight = DEFAULT_BRUSH_SIZE;
    session->brushShape = SHAPE_CIRCLE;
    session->edgeMode = EDGE_FULL;
    session->paintColour = DEFAULT_COLOUR;
    session->opacity = DEFAULT_OPACITY;
    session->overlayHideCount = -1;
    session->overlayEnabled = 1;
    session->currentTool = TOOL_NONE;
    session->textFont = defaultFont();
    for (int slot = 0; slot < TOOL_COUNT; ++slot)
        session->toolSettings[slot] = defaultSettings(TOOL_SLOTS[slot]);
}
