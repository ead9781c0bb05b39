// The caret of the open line of text, at the record's caretX and caretY.
//
// Fitted, the caret is placed at image coordinates taken as client coordinates, so it sits on the text only when
// the canvas shows the image at its own size: users know it there. Zoomed, it sits on the text.
#pragma once

#include <windows.h>

void showTextCaret(HWND canvas);  // makes it when there is none
void dropTextCaret(HWND canvas);

// Puts it where the record says.
void setTextCaret(HWND canvas);

// The canvas has another view: the caret goes where it shows the line.
void placeCaretForView(HWND canvas);
