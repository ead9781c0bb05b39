#include "session/ground/language_table.h"

const Language languages[17] = {
    {"FR", 0},     {"DE", 9000},  {"IT", 4000},  {"ES", 2000},  {"PT", 3000},  {"RU", 5000},
    {"UK", 5000},  {"PL", 6000},  {"NL", 7000},  {"CH", 8000},  {"SK", 10000}, {"HU", 11000},
    {"JP", 12000}, {"CS", 13000}, {"TR", 14000}, {"LT", 15000}, {"KO", 16000},
};

static bool sameCode(const char* a, const char* b)
{
    return a[0] == b[0] && a[0] && a[1] == b[1];
}

int languageOffsetOf(const char* code)
{
    for (const Language& language : languages) {
        if (sameCode(code, language.code)) return language.offset;
    }
    return ENGLISH_OFFSET;
}

void localiseDialogName(char* name, const char* code)
{
    if (!code[0] || !code[1]) return;
    const char* letters = sameCode(code, "UK") ? "RU" : code;
    name[0] = letters[0];
    name[1] = letters[1];
}
