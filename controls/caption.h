// What a control's text says. "BB:TEXT BMP:..." stands for TEXT; any other text stands for itself.
#pragma once

#include <stddef.h>

// Cuts a control's text down to what is shown, in place ('&' marks stay).
void shownText(wchar_t* text);

// Removes the marks of access keys in place: "&Save" -> "Save", "A && B" -> "A & B".
void removeAccessKeys(wchar_t* text);
