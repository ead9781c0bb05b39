// The 17 languages: two-letter code, and the offset of their strings.
#pragma once

struct Language {
    char code[3];
    int offset;  // string ids are 100 + offset
};

constexpr int ENGLISH_OFFSET = 1000;

// In the order in which a code is looked up. UK (as in the system's abbreviation) reads as Russian.
// English has no row: it is what any unknown code gets.
extern const Language languages[17];

// Offset of the language whose code the text begins with; ENGLISH_OFFSET when there is none.
int languageOffsetOf(const char* code);

// Replaces the first two letters of a dialog name by the language code; UK becomes RU. A code of
// fewer than two letters leaves the name alone.
void localiseDialogName(char* name, const char* code);
