// The user's language: dialogs by prefixed name, strings by offset number. Both through the wide calls: the
// language and the system's code page need not match, and every letter must be right.
#pragma once

#include <windows.h>

// Fills languageCode from the profile, upper-cased when it is longer than two letters.
void readProfileLanguage();
// Overwrites it with the abbreviated name of the user's locale, upper-cased; leaves it on failure.
void readLocaleLanguage();

// Offset of the user's strings; asks the locale when no code has been read yet.
int languageOffset();

// LoadStringW of id + languageOffset(); `size` counts characters. Returns the length, 0 when the string is missing.
int loadLocalString(HINSTANCE instance, UINT id, WCHAR* buffer, int size);

// CreateDialogParamW of the template whose English name is given ("ENDLGRTCH_CMD"), in the user's
// language, and in English when that template is missing. 0 when neither can be created.
HWND openLocalDialog(HINSTANCE instance, const WCHAR* englishName, HWND owner, DLGPROC proc, LPARAM param);

// The same with DialogBoxParamW: returns the dialog's end code, -1 when neither template is there.
INT_PTR runLocalDialog(HINSTANCE instance, const WCHAR* englishName, HWND owner, DLGPROC proc, LPARAM param);
