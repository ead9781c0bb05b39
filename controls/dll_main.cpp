#include <windows.h>

#include "controls/button.h"
#include "controls/separator.h"

// A name that another module of the process has taken already is left to it: its controls then stand in our dialogs,
// which is better than a library that cannot be loaded, and the program that needs it neither.
static void registerClasses(HINSTANCE instance)
{
    registerButtonClass(instance);
    registerSeparatorClass(instance);
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* processEnds)
{
    switch (reason) {
    case DLL_PROCESS_ATTACH:
        DisableThreadLibraryCalls(instance);
        registerClasses(instance);
        break;
    case DLL_PROCESS_DETACH:
        if (processEnds) break;  // the classes go with the process
        unregisterSeparatorClass(instance);
        unregisterButtonClass(instance);
        break;
    }
    return TRUE;
}
