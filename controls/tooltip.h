// One tooltip window for each dialog, made when the pointer first moves over one of its buttons. The
// dialog keeps it as a property; it goes with destroyTooltip() or with the dialog itself.
#pragma once

#include <windows.h>

// Shows a button's mouse message to the tooltip window of its dialog. The first call makes the window
// and the button's entry; buttons without a text get none.
void relayToTooltip(HWND button, UINT message, WPARAM wp, LPARAM lp);

// Puts the button's current text into its entry, if it has one.
void updateTooltip(HWND button);

// Removes the button's entry, if it has one.
void removeFromTooltip(HWND button);

// Destroys a dialog's tooltip window, if it has one.
void destroyTooltip(HWND dialog);
