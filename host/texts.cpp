#include "host/texts.h"

#include <windows.h>

struct HostLanguage {
    wchar_t code[3];  // as the system abbreviates it
    int offset;       // of its texts' numbers
};
static const HostLanguage languages[] = {
#include "host/text_languages.inc"
};

constexpr wchar_t ENGLISH[] = L"EN";
static bool terminalListens = true;

static int offsetOf(const wchar_t* code)
{
    for (const HostLanguage& language : languages)
        if (CompareStringOrdinal(language.code, 2, code, 2, TRUE) == CSTR_EQUAL) return language.offset;
    return offsetOf(ENGLISH);
}

// The library goes by the same name of the locale.
static int userOffset()
{
    wchar_t code[16] = L"";
    const DWORD length = GetEnvironmentVariableW(L"RETOUCH_LANGUAGE", code, 16);  // for tests and pictures
    if (length < 2 || length >= 16) GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SABBREVLANGNAME, code, 16);
    return offsetOf(code[0] && code[1] ? code : ENGLISH);
}

static std::wstring load(int id)
{
    const wchar_t* text = nullptr;
    const int length = LoadStringW(GetModuleHandleW(nullptr), (UINT)id, (wchar_t*)&text, 0);
    return length > 0 ? std::wstring(text, (size_t)length) : std::wstring();
}

static std::wstring filledIn(const std::wstring& text, const std::wstring& first, const std::wstring& second)
{
    std::wstring filled;
    for (size_t i = 0; i < text.size(); ++i) {
        const wchar_t next = i + 1 < text.size() ? text[i + 1] : 0;
        if (text[i] != L'%' || (next != L'1' && next != L'2')) {
            filled += text[i];
            continue;
        }
        filled += next == L'1' ? first : second;
        ++i;
    }
    return filled;
}

std::wstring caption(TextId id, const std::wstring& first, const std::wstring& second)
{
    return filledIn(load(id + userOffset()), first, second);
}

std::wstring sentence(TextId id, const std::wstring& first, const std::wstring& second)
{
    return terminalListens ? filledIn(load(id + offsetOf(ENGLISH)), first, second) : caption(id, first, second);
}

void speakToTerminal(bool terminal)
{
    terminalListens = terminal;
}
