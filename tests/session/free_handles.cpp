#include "tests/session/free_handles.h"

#include <windows.h>

#include <vector>

int freeMemoryHandles()
{
    std::vector<HGLOBAL> blocks;
    while (const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 0))
        blocks.push_back(block);
    for (HGLOBAL block : blocks)
        GlobalFree(block);
    return (int)blocks.size();
}

int freeGraphicsHandles()
{
    std::vector<HGDIOBJ> brushes;
    for (COLORREF colour = 0; const HGDIOBJ brush = CreateSolidBrush(colour); ++colour)
        brushes.push_back(brush);
    for (HGDIOBJ brush : brushes)
        DeleteObject(brush);
    return (int)brushes.size();
}
