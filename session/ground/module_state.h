// The few globals that outlive a session.
#pragma once

#include <windows.h>

extern HINSTANCE moduleInstance;  // KOVRTCH32.dll; set by its main routine
extern int sessionResult;         // what the entry returns: 1 Save, 0 Close. Keeps its value from session to session
extern char languageCode[4];      // upper-case abbreviation of the user's language; its first two letters count
