#pragma once

#include <windows.h>

#include "session/ground/scroll_step.h"

// Moves a scroll bar control as the message (wParam of WM_HSCROLL or WM_VSCROLL) says and redraws it
// when its position changed or the movement has ended.
void scrollStep(HWND bar, WPARAM message, const ScrollRange& range);

int scrollPosition(HWND dialog, int barId);
void setScrollBar(HWND dialog, int barId, const ScrollRange& range, int position);
