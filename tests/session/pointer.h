// The pointer and the keyboard as the system has them, not posted messages: positions are screen pixels,
// and every call waits until the session's thread has retrieved and dispatched the input.
//
// Moves go in as absolute input events, and nothing else is let through. Otherwise Wine would warp the
// display's own pointer along with every move and hear of that a little later, once at the old and once at
// the new position: the button would then at times go down in the wrong place. (Nor could a person at the
// desk disturb a test.) The price: GetCursorPos tells where the display's pointer rests, unless placePointer
// has taken it along.
#pragma once

#include "tests/session/session_driver.h"

// To be called before the first move. The display's pointer goes to the right border, where no test opens a
// window. Holds until the program ends.
void takeOverPointer();

bool movePointer(Host* host, POINT screen);
// Takes the display's pointer along, for code that asks GetCursorPos.
bool placePointer(Host* host, POINT screen);
void restPointer();  // sends the display's pointer back to the right border
bool pressButton(Host* host);
bool pressButtonOnly();  // for places where the system then retrieves nothing but mouse messages
bool releaseButton(Host* host);
void letGoOfButton();  // waits for nothing: there may be no window left to hear of it

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
