// What a rectangle of the screen shows.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include "tests/reference/colour_reference.h"
#include "tests/session/session_driver.h"

// Rows bottom-up. What the session has painted is there.
reference::StoredPicture screenPart(const RECT& part);

// The same at this moment, without waiting for the session: for measurements.
reference::StoredPicture screenPartNow(const RECT& part);

// The client area of a window.
reference::StoredPicture shownBy(HWND window);

// Whether the canvas shows what it shows when all of it is painted anew (which this does).
testing::AssertionResult showsWhatAFullRepaintShows(Host* host);
