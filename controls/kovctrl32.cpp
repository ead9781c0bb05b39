#include "controls/kovctrl32.h"

int WINAPI setButtonPicture(HWND, HBITMAP, int)
{
    return 0;
}

int WINAPI displayMode(void)
{
    return 2;
}

int WINAPI paintDialogBackground(HWND, HDC, int)
{
    return 1;
}

int WINAPI releaseDialog(HWND)
{
    return 1;
}

int WINAPI dragBitmap(HWND, HGLOBAL, const RECT*, POINT, COLORREF)
{
    return 0;
}
