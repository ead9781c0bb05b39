#include <windows.h>

#include "session/ground/language.h"
#include "session/ground/module_state.h"

// The reason is not looked at: every call renews the instance handle and the profile's language.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD, LPVOID)
{
    moduleInstance = instance;
    readProfileLanguage();
    return instance != nullptr;
}
