// What the program's window looks like: a panel of text in its middle, or a picture; a line at its bottom.
#pragma once

#include <string>
#include <windows.h>

struct HostFace {
    HFONT font = nullptr, largeFont = nullptr;
    std::wstring panel;    // in the middle; empty: no panel
    bool bar = false;      // room for a bar in it
    std::wstring status;   // at the bottom, on the left
    std::wstring waiting;  // and on the right
    HGLOBAL picture = nullptr;
};

// In the system's sizes; again whenever they have changed.
void renewFonts(HostFace* face);
void releaseFonts(HostFace* face);

// In client coordinates.
RECT roomAboveStatus(const HostFace& face, const RECT& client);
RECT placeOfBar(const HostFace& face, const RECT& client);

void paintFace(const HostFace& face, HDC dc, const RECT& client);
