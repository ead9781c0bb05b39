#include "session/ground/language.h"

#include <cstring>

#include "session/ground/language_table.h"
#include "session/ground/module_state.h"
#include "session/ground/session_extras.h"

constexpr int DIALOG_NAME_SIZE = 32;

void readProfileLanguage()
{
    const DWORD length = GetProfileStringA("Intl", "sLanguage", "", languageCode, sizeof languageCode);
    if (length > 2) CharUpperA(languageCode);
}

void readLocaleLanguage()
{
    char code[sizeof languageCode];
    if (!GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SABBREVLANGNAME, code, sizeof code)) return;
    code[sizeof code - 1] = 0;
    CharUpperA(code);
    memcpy(languageCode, code, sizeof code);
}

int languageOffset()
{
    if (!languageCode[0]) readLocaleLanguage();
    return languageOffsetOf(languageCode);
}

int loadLocalString(HINSTANCE instance, UINT id, WCHAR* buffer, int size)
{
    if (size > 0) buffer[0] = 0;
    return LoadStringW(instance, id + languageOffset(), buffer, size);
}

static void localName(WCHAR* name, const WCHAR* englishName)
{
    lstrcpynW(name, englishName, DIALOG_NAME_SIZE);
    localiseDialogName(name, languageCode);
}

HWND openLocalDialog(HINSTANCE instance, const WCHAR* englishName, HWND owner, DLGPROC proc, LPARAM param)
{
    WCHAR name[DIALOG_NAME_SIZE];
    localName(name, englishName);
    const HWND dialog = CreateDialogParamW(instance, name, owner, proc, param);
    return dialog ? dialog : CreateDialogParamW(instance, englishName, owner, proc, param);
}

INT_PTR runLocalDialog(HINSTANCE instance, const WCHAR* englishName, HWND owner, DLGPROC proc, LPARAM param)
{
    WCHAR name[DIALOG_NAME_SIZE];
    localName(name, englishName);
    const INT_PTR result = DialogBoxParamW(instance, name, owner, proc, param);
    return result != -1 || !sessionGoesOn() ? result : DialogBoxParamW(instance, englishName, owner, proc, param);
}
