#include "text/text_tool.h"

int textClick(HWND, int, int)
{
    return 0;
}

void textKeyDown(HWND, UINT) {}
void textChar(HWND, UINT) {}
void paintTextOverlay(HWND, HDC) {}
void endText(HWND) {}
void chooseTextFont(HWND) {}
