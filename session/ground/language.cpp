#include "session/ground/language.h"

#include <cstring>

#include "session/ground/language_table.h"
#include "session/ground/module_state.h"

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

int loadLocalString(HINSTANCE instance, UINT id, char* buffer, int size)
{
    if (size > 0) buffer[0] = 0;
    return LoadStringA(instance, id + languageOffset(), buffer, size);
}

static void localName(char* name, const char* englishName)
{
    lstrcpynA(name, englishName, DIALOG_NAME_SIZE);
    localiseDialogName(name, languageCode);
}

HWND openLocalDialog(HINSTANCE instance, const char* englishName, HWND owner, DLGPROC proc, LPARAM param)
{
    char name[DIALOG_NAME_SIZE];
    localName(name, englishName);
    const HWND dialog = CreateDialogParamA(instance, name, owner, proc, param);
    return dialog ? dialog : CreateDialogParamA(instance, englishName, owner, proc, param);
}

INT_PTR runLocalDialog(HINSTANCE instance, const char* englishName, HWND owner, DLGPROC proc, LPARAM param)
{
    char name[DIALOG_NAME_SIZE];
    localName(name, englishName);
    const INT_PTR result = DialogBoxParamA(instance, name, owner, proc, param);
    return result != -1 ? result : DialogBoxParamA(instance, englishName, owner, proc, param);
}
