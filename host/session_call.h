// Opens the host's window and calls the retouching library over a photo.
#pragma once

#include <string>
#include <windows.h>

enum class SessionResult { Saved, Closed, NoLibrary, NoWindow };

// image stays the caller's; after Saved it holds the edited photo, else what it held before (see
// include/kovrtch32.h). name is shown in the window's title.
SessionResult runSession(HGLOBAL image, const std::wstring& name);
