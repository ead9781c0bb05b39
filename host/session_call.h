// Opens the host's window and calls the retouching library over a photo.
#pragma once

#include "include/kovrtch32.h"

#include <string>

enum class SessionResult { Saved, Closed, NoWindow };

// image stays the caller's; after Saved it holds the edited photo, else what it held before (see
// include/kovrtch32.h). name is shown in the window's title.
SessionResult runSession(RetouchEntry retouch, HGLOBAL image, const std::wstring& name);
