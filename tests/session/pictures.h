// What the takers of pictures share. RETOUCH_PICTURES names the directory for the pictures, with a separator at its
// end, RETOUCH_PHOTO a 24-bit bitmap file to take them of.
#pragma once

#include <string>

#include "tests/session/session_fixture.h"

// A part of the screen, as NAME.bmp.
void takePicture(const std::string& name, RECT part);
RECT windowRect(HWND window);

// The named photo, shown at its own size, in a host whose title names it.
void usePhotoOfPictures(SessionTest* session);
