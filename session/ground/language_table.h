// The languages: two-letter code, the letters of their dialogs, and the offset of their strings.
#pragma once

constexpr int ENGLISH_OFFSET = 1000;  // string ids are 100 + offset

// Offset of the language whose code the text begins with; ENGLISH_OFFSET when there is none.
int languageOffsetOf(const char* code);

// Replaces the first two letters of a dialog name by the language code, or by those of the language
// that is shown for it. A code of fewer than two letters leaves the name alone.
void localiseDialogName(wchar_t* name, const char* code);
