#include "controls/kovctrl32.h"

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
