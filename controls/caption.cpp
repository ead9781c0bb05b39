#include "controls/caption.h"

#include <string.h>
#include <wchar.h>

void shownText(wchar_t* text)
{
    static const wchar_t prefix[] = L"BB:";
    const size_t prefixLength = sizeof prefix / sizeof *prefix - 1;
    if (wcsncmp(text, prefix, prefixLength) != 0) return;
    memmove(text, text + prefixLength, (wcslen(text + prefixLength) + 1) * sizeof *text);
    if (wchar_t* pictures = wcsstr(text, L" BMP:")) *pictures = 0;
}

void removeAccessKeys(wchar_t* text)
{
    wchar_t* to = text;
    for (const wchar_t* from = text; *from; ++from) {
        if (*from == L'&' && *++from == 0) break;
        *to++ = *from;
    }
    *to = 0;
}
