// One tooltip window for each dialog, made when the pointer first moves over one of its controls. The
// dialog keeps it as a property; it goes with destroyTooltip() or with the dialog itself.
#pragma once

#include <windows.h>

// Shows a control's mouse message to the tooltip window of its dialog. The first call makes the window
// and the control's entry. Controls without a text get none, nor do buttons on which their caption is read already.
void relayToTooltip(HWND button, UINT message, WPARAM wp, LPARAM lp);

// Puts the button's current text into its entry, if it has one.
void updateTooltip(HWND button);

// Removes the button's entry, if it has one.
void removeFromTooltip(HWND button);

// Shows a text beside the control until it is null or the next one: the value while it moves.
void trackTooltip(HWND control, const wchar_t* text);

// Destroys a dialog's tooltip window, if it has one.
void destroyTooltip(HWND dialog);
