#include "selection/selection.h"

void pressSelection(HWND, POINT) {}
void moveSelectionPointer(HWND, POINT) {}
void releaseSelection(HWND, POINT) {}
void pressOutlineBrush(HWND, POINT) {}
void releaseOutlineBrush(HWND) {}
void drawSelection(HDC) {}

bool setSelectionCursor(HWND)
{
    return false;
}

void clearSelection() {}
