#include "session/ground/tool_table.h"

#include "resources/resource_ids.h"

constexpr uint32_t START_SIZE = 16;
constexpr uint32_t START_COLOUR = 0x00C0C0FF;
constexpr uint32_t START_OPACITY = 100;

constexpr ToolSettings startOf(ToolId id, uint32_t showOutline, uint32_t sizesMoveTogether, uint32_t widthEnabled)
{
    return {id, SHAPE_CIRCLE,      EDGE_FULL,    showOutline, START_SIZE,   START_SIZE,
            0,  sizesMoveTogether, widthEnabled, 1,           START_COLOUR, START_OPACITY};
}

constexpr ToolSettings brush(ToolId id)
{
    return startOf(id, 1, 1, 1);
}

constexpr ToolSettings withoutOutline(ToolId id)
{
    return startOf(id, 0, 1, 1);
}

constexpr ToolSettings heightOnly(ToolId id)
{
    return startOf(id, 0, 0, 0);
}

// clang-format off
constexpr Tool tools[] = {
    // id                cursor                slot  settings at the start               becomes an undo step
    //                                                                         outline pressed, clears, patch
    {TOOL_SELECTION,     CURSOR_SELECTION,     0, withoutOutline(TOOL_SELECTION), UNDO_NEVER,      false, false, false},
    {TOOL_BRUSH,         CURSOR_BRUSH,         1, brush(TOOL_BRUSH),              UNDO_AT_RELEASE, false, true,  false},
    {TOOL_SMOOTH,        CURSOR_SMOOTH,        2, brush(TOOL_SMOOTH),             UNDO_AT_RELEASE, false, true,  false},
    {TOOL_AEROGRAPHE,    CURSOR_AEROGRAPHE,    3, brush(TOOL_AEROGRAPHE),         UNDO_AT_RELEASE, false, true,  false},
    {TOOL_STAMP,         CURSOR_STAMP,         4, brush(TOOL_STAMP),              UNDO_AT_PRESS,   false, true,  true},
    {TOOL_SPOONBILL,     CURSOR_SPOONBILL,     5, brush(TOOL_SPOONBILL),          UNDO_AT_RELEASE, false, true,  false},
    {TOOL_RUBBER,        CURSOR_RUBBER,        6, brush(TOOL_RUBBER),             UNDO_AT_RELEASE, false, true,  false},
    {TOOL_CONTRAST,      0,                    7, withoutOutline(TOOL_CONTRAST),  UNDO_NEVER,      false, true,  false},
    {TOOL_TEXT,          CURSOR_TEXT,          8, heightOnly(TOOL_TEXT),          UNDO_NEVER,      false, true,  false},
    {TOOL_OUTLINE_BRUSH, CURSOR_OUTLINE_BRUSH, 9, brush(TOOL_OUTLINE_BRUSH),      UNDO_NEVER,      true,  false, false},
    {TOOL_COLORS,        CURSOR_COLORS,  NO_SLOT, withoutOutline(TOOL_COLORS),    UNDO_NEVER,      false, false, false},
};
// clang-format on

constexpr bool slotsInOrder()
{
    for (int slot = 0; slot < TOOL_COUNT; ++slot)
        if (tools[slot].slot != slot || tools[slot].start.toolId != tools[slot].id) return false;
    return true;
}
static_assert(slotsInOrder(), "toolInSlot takes the rows by their slots");

// A tool's button has the tool's id.
static_assert((int)TOOL_CONTRAST == BUTTON_CONTRAST && (int)TOOL_SELECTION == BUTTON_SELECTION, "");
static_assert((int)TOOL_BRUSH == BUTTON_BRUSH && (int)TOOL_RUBBER == BUTTON_RUBBER, "");
static_assert((int)TOOL_AEROGRAPHE == BUTTON_AEROGRAPHE && (int)TOOL_STAMP == BUTTON_STAMP, "");
static_assert((int)TOOL_SMOOTH == BUTTON_SMOOTH && (int)TOOL_SPOONBILL == BUTTON_SPOONBILL, "");
static_assert((int)TOOL_TEXT == BUTTON_TEXT && (int)TOOL_COLORS == BUTTON_COLORS, "");
static_assert(BUTTON_FIRST_TOOL == BUTTON_CONTRAST && BUTTON_LAST_TOOL == BUTTON_COLORS, "one radio group");

const Tool* findTool(uint32_t id)
{
    for (const Tool& tool : tools) {
        if (tool.id == id) return &tool;
    }
    return nullptr;
}

const Tool& toolInSlot(int slot)
{
    return tools[slot];
}
