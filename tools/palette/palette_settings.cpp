// The palette's scroll bars, and the settings that each tool keeps.
#include <windows.h>

#include "canvas/view/canvas_press.h"
#include "canvas/view/cursor_outline.h"
#include "resources/resource_ids.h"
#include "session/ground/session_record.h"
#include "text/text_tool.h"
#include "tools/brush/brush_mask.h"
#include "tools/brush/brush_preview.h"
#include "tools/brush/picked_patch.h"
#include "tools/palette/palette_controls.h"
#include "session/dialogs/scroll_bars.h"

constexpr uint32_t TEXT_BRUSH_WIDTH = 3;

static ToolSettings* findSettings(uint32_t toolId)
{
    for (ToolSettings& settings : session->toolSettings) {
        if (settings.toolId == toolId) return &settings;
    }
    return nullptr;
}

// The height of the Text tool is its font's, which the font dialog may set beyond the bars' range.
constexpr int LARGEST_FONT_HEIGHT = 4096;

// Settings come from a file that anybody can edit; sizes outside the range are brought inside.
static uint32_t sizeWithin(uint32_t stored, int maximum)
{
    const int size = (int)stored;
    if (size < BRUSH_SIZE_RANGE.minimum) return (uint32_t)BRUSH_SIZE_RANGE.minimum;
    return size > maximum ? (uint32_t)maximum : stored;
}

static uint32_t percent(uint32_t stored)
{
    return (int)stored < 0 ? 0 : stored > 100 ? 100 : stored;
}

static void forceTextBlock(ToolSettings& settings)
{
    settings.shape = SHAPE_RECTANGLE;
    settings.width = TEXT_BRUSH_WIDTH;
    settings.lockLH = 0;
    settings.widthEnabled = 0;
}

static void takeSettings(const ToolSettings& settings)
{
    session->brushShape = settings.shape == SHAPE_RECTANGLE ? SHAPE_RECTANGLE : SHAPE_CIRCLE;
    session->edgeMode = settings.edge == EDGE_SMOOTH ? EDGE_SMOOTH : EDGE_FULL;
    const bool text = settings.toolId == TOOL_TEXT;
    session->brushWidth = sizeWithin(settings.width, BRUSH_SIZE_RANGE.maximum);
    session->brushHeight = sizeWithin(settings.height, text ? LARGEST_FONT_HEIGHT : BRUSH_SIZE_RANGE.maximum);
    session->paintColour = settings.colour & 0x00FFFFFF;
    session->opacity = percent(settings.opacity);
}

static void enableControl(HWND palette, int id, bool enabled)
{
    EnableWindow(GetDlgItem(palette, id), enabled);
}

static void showSettings(HWND palette, const ToolSettings& settings)
{
    const bool text = settings.toolId == TOOL_TEXT;
    enableControl(palette, CHECK_LOCK_LH, !text);
    CheckDlgButton(palette, CHECK_LOCK_LH, settings.lockLH ? BST_CHECKED : BST_UNCHECKED);
    SetScrollPos(GetDlgItem(palette, BAR_WIDTH), SB_CTL, (int)session->brushWidth, TRUE);
    SetScrollPos(GetDlgItem(palette, BAR_HEIGHT), SB_CTL, (int)session->brushHeight, TRUE);
    SetScrollPos(GetDlgItem(palette, BAR_OPACITY), SB_CTL, (int)session->opacity, TRUE);
    enableControl(palette, BAR_WIDTH, settings.widthEnabled != 0);
    enableControl(palette, BAR_HEIGHT, settings.heightEnabled != 0);
    CheckRadioButton(palette, BUTTON_CIRCLE, BUTTON_RECTANGLE, BUTTON_CIRCLE + (int)session->brushShape);
    CheckRadioButton(palette, BUTTON_EDGE_FULL, BUTTON_EDGE_SMOOTH, BUTTON_EDGE_FULL + (int)session->edgeMode);
}

// The stored opacity is the bar's position squared, in percent: 40 on the bar stores 16. The bar shows
// the stored value when it is loaded again. Strokes and settings files depend on the stored one.
static void scrollOpacity(HWND palette, HWND bar, WPARAM message)
{
    scrollStep(bar, message, OPACITY_RANGE);
    if (LOWORD(message) != SB_ENDSCROLL) return;
    const uint32_t position = (uint32_t)scrollPosition(palette, BAR_OPACITY);
    session->opacity = position * position / 100;
}

static void finishSizing()
{
    endText(session->canvasWindow);
    dropPickedPatch();
    buildBrushMask((int)session->brushWidth, (int)session->brushHeight);
    rebuildOutline(session->canvasWindow, 1);
}

static void scrollSize(HWND palette, HWND bar, int id, WPARAM message)
{
    scrollStep(bar, message, BRUSH_SIZE_RANGE);
    if (IsDlgButtonChecked(palette, CHECK_LOCK_LH) == BST_CHECKED) {
        scrollStep(GetDlgItem(palette, id == BAR_WIDTH ? BAR_HEIGHT : BAR_WIDTH), message, BRUSH_SIZE_RANGE);
    }
    session->brushWidth = (uint32_t)scrollPosition(palette, BAR_WIDTH);
    session->brushHeight = (uint32_t)scrollPosition(palette, BAR_HEIGHT);
    invalidateBrushPreview();
    if (LOWORD(message) == SB_ENDSCROLL) finishSizing();
}

void saveToolSettings(uint32_t toolId)
{
    ToolSettings* settings = findSettings(toolId);
    if (!settings) return;
    settings->shape = session->brushShape;
    settings->edge = session->edgeMode;
    settings->width = session->brushWidth;
    settings->height = session->brushHeight;
    settings->colour = session->paintColour;
    settings->opacity = session->opacity;
}

void loadToolSettings(HWND palette, uint32_t toolId)
{
    ToolSettings* settings = findSettings(toolId);
    if (!settings) return;
    if (toolId == TOOL_TEXT) forceTextBlock(*settings);
    takeSettings(*settings);
    showSettings(palette, *settings);
    rebuildOutline(session->canvasWindow, 1);
    invalidateBrushPreview();
    if (settings->showOutline) {
        showOutline(session->canvasWindow);
    } else {
        hideOutline(session->canvasWindow);
    }
}

void scrollPaletteBar(HWND palette, HWND bar, WPARAM message)
{
    endCanvasPress();
    const int id = GetDlgCtrlID(bar);
    if (id == BAR_OPACITY) {
        scrollOpacity(palette, bar, message);
    } else if (id == BAR_WIDTH || id == BAR_HEIGHT) {
        scrollSize(palette, bar, id, message);
    } else {
        return;
    }
    showMovement(bar, message);
    saveToolSettings(session->currentTool);
}
