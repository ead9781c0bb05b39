#pragma once

#include <windows.h>

#include "session/ground/scroll_step.h"

// Moves a scroll bar control as the message (wParam of WM_HSCROLL or WM_VSCROLL) says and redraws it
// when its position changed or the movement has ended.
void scrollStep(HWND bar, WPARAM message, const ScrollRange& range);

int scrollPosition(HWND dialog, int barId);
// Gives a bar its name in full words, string `nameId` of the user's language: its tooltip.
void nameScrollBar(HWND dialog, int barId, UINT nameId);
// After a movement: name and value beside the bar, until the movement has ended.
void showMovement(HWND bar, WPARAM message);
void setScrollBar(HWND dialog, int barId, const ScrollRange& range, int position);
