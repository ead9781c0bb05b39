// The class "statique": an etched line when it has no text, along its longer side; else a label.
#pragma once

#include <windows.h>

BOOL registerSeparatorClass(HINSTANCE instance);
void unregisterSeparatorClass(HINSTANCE instance);
