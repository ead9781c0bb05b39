// What a rectangle of the screen shows.
#pragma once

#include <windows.h>

#include <string>

#include "tests/reference/colour_reference.h"
#include "tests/session/session_driver.h"

// Rows bottom-up. What the session has painted is there.
reference::StoredPicture screenPart(const RECT& part);

// The same at this moment, without waiting for the session: for measurements.
reference::StoredPicture screenPartNow(const RECT& part);

// The client area of a window.
reference::StoredPicture shownBy(HWND window);

// Where two pictures of one size differ, in words.
std::string placeOfDifferences(const reference::StoredPicture& one, const reference::StoredPicture& other);

// Whether the canvas shows what it shows when all of it is painted anew (which this does).
bool showsWhatAFullRepaintShows(Host* host);
