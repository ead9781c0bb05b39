#include "session/ground/language_table.h"

struct Language {
    char code[3];     // as the system abbreviates it
    char letters[3];  // its dialogs' names begin with them; another language's when it has no dialogs of its own
    int offset;
};

// Written by the build, from resources/languages. English has no row: it is what every unknown code gets.
static const Language languages[] = {
#include "session/ground/language_rows.inc"
};

static bool sameCode(const char* a, const char* b)
{
    return a[0] == b[0] && a[0] && a[1] == b[1];
}

static const Language* languageOf(const char* code)
{
    for (const Language& language : languages)
        if (sameCode(code, language.code)) return &language;
    return nullptr;
}

int languageOffsetOf(const char* code)
{
    const Language* language = languageOf(code);
    return language ? language->offset : ENGLISH_OFFSET;
}

void localiseDialogName(wchar_t* name, const char* code)
{
    if (!code[0] || !code[1]) return;
    const Language* language = languageOf(code);
    const char* letters = language ? language->letters : code;
    name[0] = (wchar_t)letters[0];
    name[1] = (wchar_t)letters[1];
}
