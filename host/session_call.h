// Calls the retouching library over a photo.
#pragma once

#include "include/kovrtch32.h"

// Shows the program's window, which must be there, and puts editor and palette side by side on it. image stays the
// caller's; true: it holds the edited photo, else what it held before (see include/kovrtch32.h).
bool runSession(RetouchEntry retouch, HGLOBAL image);
