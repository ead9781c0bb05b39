// A session for keys that need one: the record, a host window with a large photo, and the canvas.
#pragma once

#include <windows.h>

// The photo of the yardstick keys, 6000 x 4000 pixels; the caller owns it. Null when it cannot be made.
HGLOBAL makeLargePhoto();

// A visible canvas of 900 x 600 pixels over that photo. False when it cannot be opened; close it anyway.
bool openBenchSession();
void closeBenchSession();

// At 200 %, in the middle of the photo. False when it could not be zoomed so far.
bool zoomBenchSession();
// A step of 37 pixels there and one back: each the whole step, up to the screen.
void panThereAndBack();
