// What screen readers are told of a control. The system's own answer would be the raw text of the template; ours is the
// caption as it is read, or the name in full words, and of a bar its position. All else is the system's answer.
#pragma once

#include <windows.h>

// Answers WM_GETOBJECT of a control that is built on a class of the system's. 0: nothing of ours was asked for, or it
// cannot be had, and the class's own answer counts.
LRESULT answerObjectRequest(HWND control, WPARAM wp, LPARAM lp);

// At the control's end.
void endObjectRequests(HWND control);

// The caption of a control in plain words, or the name that it was given. Empty: it has none.
void readPlainName(HWND control, wchar_t* text, int length);
