// The floating tool palette: tools, brush size, shape, edge and opacity, colour, undo, and the two
// buttons that end the session. It sets fields of the record that canvas and dab engine read.
#pragma once

#include <windows.h>

constexpr WCHAR PALETTE_TEMPLATE[] = L"ENDLGRTCH_CMD";  // the English one; the first two letters are the language

INT_PTR CALLBACK paletteDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
