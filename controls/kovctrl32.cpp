#include "controls/kovctrl32.h"

#include "controls/button.h"
#include "controls/separator.h"
#include "controls/tooltip.h"

int WINAPI displayMode(void)
{
    return 2;
}

int WINAPI paintDialogBackground(HWND dialog, HDC dc, int)
{
    // The device context of an erase message is clipped to the update region already.
    RECT client;
    if (GetClientRect(dialog, &client)) FillRect(dc, &client, GetSysColorBrush(COLOR_BTNFACE));
    return 1;
}

int WINAPI releaseDialog(HWND dialog)
{
    destroyTooltip(dialog);
    return 1;
}

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
