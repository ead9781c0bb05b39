// The floating tool palette: tools, brush size, shape, edge and opacity, colour, undo, and the two
// buttons that end the session. It sets fields of the record that canvas and dab engine read.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr char PALETTE_TEMPLATE[] = "ENDLGRTCH_CMD";  // the English one; the first two letters are the language

INT_PTR CALLBACK paletteDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// Makes a tool current as a click on its button does, and checks the button.
void selectTool(uint32_t tool);

// The brush preview is painted again, for whoever changes the paint colour.
void invalidateBrushPreview();
