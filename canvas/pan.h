// Dragging the zoomed view with the middle button, or with Space and the left one; and the view's own slow move
// while a drag of the selection is held at the canvas's border. Client points.
#pragma once

#include <windows.h>

constexpr UINT_PTR BORDER_TIMER = 2;  // armed while a drag is held at the border

// A button goes down. True when it starts a pan, or comes during one: then the press is nothing else.
bool beginPan(HWND canvas, POINT at, bool middle);

// True while a pan runs, which then follows.
bool followPan(HWND canvas, POINT at);

// A button goes up. True when the release belongs to a pan.
bool endPan(HWND canvas, bool middle);

bool panRuns();
void losePan(HWND canvas);    // the capture is lost: the view stays where it is
bool cancelPan(HWND canvas);  // the view goes back; false when no pan runs

// The hand, while a pan runs or Space is held. False when the cursor is another.
bool setPanCursor(HWND canvas);

// A drag of the selection is at a point: near the border the view starts to move, or stops.
void watchBorder(HWND canvas, POINT at);
void moveAtBorder(HWND canvas);  // WM_TIMER
