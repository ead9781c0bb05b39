// The class "Bouton": the system's push buttons, check boxes and radio buttons, drawn by this library.
#pragma once

#include <windows.h>

BOOL registerButtonClass(HINSTANCE instance);
void unregisterButtonClass(HINSTANCE instance);
