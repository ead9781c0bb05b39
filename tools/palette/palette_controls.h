// The palette's inner interface: its dialog procedure, its commands and its scroll bars.
#pragma once

#include <windows.h>

#include "session/ground/scroll_step.h"

constexpr ScrollRange BRUSH_SIZE_RANGE = {1, 48, 1, 8};
constexpr ScrollRange OPACITY_RANGE = {40, 100, 1, 10};

void runPaletteCommand(HWND palette, int id);
void scrollPaletteBar(HWND palette, HWND bar, WPARAM message);

// Copies shape, edge, size, colour and opacity of the record into the block of a tool; nothing for an id
// that is no tool.
void saveToolSettings(uint32_t toolId);

// Makes the settings of a tool the current ones and shows them in the palette.
void loadToolSettings(HWND palette, uint32_t toolId);
