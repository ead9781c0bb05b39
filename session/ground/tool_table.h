// The tools: their ids, their settings, and what belongs to each of them.
#pragma once

#include <cstdint>

// Command ids of the palette, and the identity of a tool everywhere.
enum ToolId : uint32_t {
    TOOL_NONE = 0,
    TOOL_CONTRAST = 114,       // opens a dialog, does not paint
    TOOL_OUTLINE_BRUSH = 115,  // reshapes a selection's outline; has no button
    TOOL_SELECTION = 116,
    TOOL_BRUSH = 117,
    TOOL_RUBBER = 118,
    TOOL_AEROGRAPHE = 119,
    TOOL_STAMP = 120,
    TOOL_SMOOTH = 121,
    TOOL_SPOONBILL = 122,
    TOOL_TEXT = 123,
    TOOL_COLORS = 124,  // keeps no settings of its own
};

enum BrushShape : uint32_t { SHAPE_CIRCLE = 0, SHAPE_RECTANGLE = 1 };
enum EdgeMode : uint32_t { EDGE_FULL = 0, EDGE_SMOOTH = 1 };

// What each tool remembers. Twelve 32-bit integers; the order is that of the session record.
struct ToolSettings {
    uint32_t toolId;
    uint32_t shape;        // BrushShape
    uint32_t edge;         // EdgeMode
    uint32_t showOutline;  // 1: the brush outline follows the pointer while this tool is current
    uint32_t width;        // brush size in image pixels
    uint32_t height;
    uint32_t spare;          // kept and saved, never used
    uint32_t lockLH;         // state of "L = H"
    uint32_t widthEnabled;   // L bar enabled
    uint32_t heightEnabled;  // H bar enabled
    uint32_t colour;         // COLORREF
    uint32_t opacity;        // percent
};
static_assert(sizeof(ToolSettings) == 48, "twelve 32-bit integers");

constexpr int TOOL_COUNT = 10;  // settings blocks in the record
constexpr int NO_SLOT = -1;

// When a tool's stroke becomes an undo step.
enum UndoMoment { UNDO_NEVER, UNDO_AT_PRESS, UNDO_AT_RELEASE };

// One row a tool. What its press, move and release do stands in canvas/tool_input.cpp; how the painting tools lay
// their dabs, in tools/painting/dab_engine.cpp.
struct Tool {
    ToolId id;
    int cursorId;        // resource; the canvas's cursor while the tool is current
    int slot;            // of its settings among the record's blocks, or NO_SLOT
    ToolSettings start;  // its settings before any file is read
    UndoMoment undo;
    bool outlineWhilePressed;  // the brush's outline stays at the pointer while the button is down
    bool clearsSelection;      // choosing it drops a floating selection
    bool showsPatch;           // at the pointer, the patch it has picked up instead of the brush
};

// Null for an id that is no tool.
const Tool* findTool(uint32_t id);

// The tool that a settings block (0 to TOOL_COUNT - 1) belongs to.
const Tool& toolInSlot(int slot);
