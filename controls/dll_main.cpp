#include <windows.h>

#include "controls/button.h"
#include "controls/separator.h"

static BOOL registerClasses(HINSTANCE instance)
{
    if (!registerButtonClass(instance)) return FALSE;
    if (registerSeparatorClass(instance)) return TRUE;
    unregisterButtonClass(instance);
    return FALSE;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* processEnds)
{
    switch (reason) {
    case DLL_PROCESS_ATTACH: DisableThreadLibraryCalls(instance); return registerClasses(instance);
    case DLL_PROCESS_DETACH:
        if (processEnds) break;  // the classes go with the process
        unregisterSeparatorClass(instance);
        unregisterButtonClass(instance);
        break;
    }
    return TRUE;
}
