// What each tool does with the pointer on the canvas: one row a tool.
#pragma once

#include <windows.h>

#include <cstdint>

// Points are image pixels. Null: nothing.
struct ToolInput {
    uint32_t tool;
    void (*press)(HWND canvas, POINT at);
    void (*move)(HWND canvas, POINT from, POINT to);  // with the button down
    void (*release)(HWND canvas, POINT at);
    bool (*cancel)(HWND canvas);  // ends a press as if it had not been; false: it has done its work already
};

// A row of nothing for what does not work on the canvas.
const ToolInput& inputOf(uint32_t tool);
