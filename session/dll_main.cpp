#include <windows.h>

extern "C" int WINAPI entry(HWND, HGLOBAL, RECT*, POINT*)
{
    return 0;
}
