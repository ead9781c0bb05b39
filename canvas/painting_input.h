// What the pointer does with a painting tool. Points are image pixels.
#pragma once

#include <windows.h>

constexpr UINT_PTR SPRAY_TIMER = 1;  // armed while the Aerographe's button is down

// At the press: the first dab, and what a tool does before it.
void pressPaintingTool(HWND canvas, POINT at);
void pressBrush(HWND canvas, POINT at);
void pressAerographe(HWND canvas, POINT at);  // arms the timer
void pressStamp(HWND canvas, POINT at);       // registers the press with undo
void pressSpoonbill(HWND canvas, POINT at);   // picks up a new patch

// The pointer has moved with the button down.
void continueStroke(HWND canvas, POINT from, POINT to);

// At a tick of the spray timer.
void spray(HWND canvas);

// At the release.
void registerStroke();
void releaseAerographe(HWND canvas, POINT at);
void releaseStamp(HWND canvas, POINT at);
void releaseSpoonbill(HWND canvas, POINT at);

// The press is taken back: image, undo list and picked up patch are what they were. True.
bool cancelStroke(HWND canvas);
bool cancelAerographe(HWND canvas);
bool cancelPatchStroke(HWND canvas);  // Stamp and Spoonbill
