// The real pointer and keyboard: positions are screen pixels, and every call waits until the session's
// thread has retrieved and dispatched the input.
#pragma once

#include "tests/session/session_driver.h"

bool movePointer(Host* host, POINT screen);
bool pressButton(Host* host);
bool releaseButton(Host* host);

// The same relative to the canvas's client area.
POINT onCanvas(const Host& host, int x, int y);
bool movePointerOnCanvas(Host* host, int x, int y);

// Moves to the first client point, presses, moves through the others, releases.
bool drawStroke(Host* host, const std::vector<POINT>& clientPoints);

// Clicks the middle of a palette control.
bool clickControl(Host* host, int id);

// Presses in the palette scroll bar's arrow or channel: -2 page up, -1 line up, 1 line down, 2 page down.
bool clickScrollBar(Host* host, int id, int step);
int scrollPosition(const Host& host, int id);
bool isChecked(const Host& host, int id);

// Alt+F4 through the keyboard.
void pressAltF4();
