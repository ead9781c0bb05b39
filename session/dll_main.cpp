#include <windows.h>

#include "session/ground/language.h"
#include "session/ground/module_state.h"

// Threads of the host that come and go cost nothing; the language is read again by each session.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID)
{
    moduleInstance = instance;
    if (reason == DLL_PROCESS_ATTACH) readProfileLanguage();
    return instance != nullptr;
}
