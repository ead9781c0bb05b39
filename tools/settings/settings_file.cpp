#include "tools/settings/settings_file.h"

#include <windows.h>

#include <cstdio>
#include <cstring>

#include "session/ground/module_path.h"
#include "session/ground/session_record.h"
#include "tools/settings/settings_text.h"

namespace {

constexpr WCHAR SECTION[] = L"Cursors";
constexpr WCHAR FONT_KEY[] = L"Font";
constexpr WCHAR CURRENT_FILE[] = L"KOVRTCH.INI";
constexpr WCHAR LEGACY_FILE[] = L"KOVRTOUCH.INI";
constexpr int LARGEST_FONT_HEIGHT = 4096;
constexpr int LARGEST_FONT_WEIGHT = 1000;
constexpr int LEGACY_TOOL_COUNT = TOOL_COUNT - 1;  // it did not know the outline brush

static_assert(FACE_NAME_SIZE == LF_FACESIZE, "a face name fits the font record");

// The wide calls take any path; the file itself stays in the system's ANSI code page.
bool readValue(const WCHAR* path, const WCHAR* key, char (&value)[SETTINGS_VALUE_SIZE])
{
    WCHAR wide[SETTINGS_VALUE_SIZE];
    memset(value, 0, sizeof value);
    if (!GetPrivateProfileStringW(SECTION, key, L"", wide, SETTINGS_VALUE_SIZE, path)) return false;
    if (!WideCharToMultiByte(CP_ACP, 0, wide, -1, value, sizeof value, nullptr, nullptr)) {
        value[sizeof value - 1] = 0;  // more bytes than characters: cut
    }
    return value[0] != 0;
}

void writeValue(const WCHAR* path, const WCHAR* key, const char* value)
{
    WCHAR wide[SETTINGS_VALUE_SIZE];
    if (!MultiByteToWideChar(CP_ACP, 0, value, -1, wide, SETTINGS_VALUE_SIZE)) return;
    WritePrivateProfileStringW(SECTION, key, wide, path);
}

void makeToolKey(WCHAR (&key)[16], uint32_t number)
{
    wsprintfW(key, L"T%d", (int)number);
}

FontSettings fontSettings(const LOGFONTA& font)
{
    FontSettings settings = {(int)font.lfHeight,    (int)font.lfWeight, font.lfQuality,
                             font.lfPitchAndFamily, font.lfItalic,      font.lfUnderline,
                             font.lfStrikeOut,      font.lfCharSet,     {}};
    memcpy(settings.face, font.lfFaceName, sizeof settings.face);
    settings.face[sizeof settings.face - 1] = 0;
    return settings;
}

int within(int number, int minimum, int maximum)
{
    return number < minimum ? minimum : number > maximum ? maximum : number;
}

void readFont(const WCHAR* path)
{
    char value[SETTINGS_VALUE_SIZE];
    if (!readValue(path, FONT_KEY, value)) return;
    FontSettings settings = {};
    parseFontValue(value, settings);
    LOGFONTA& font = session->textFont;
    font.lfHeight = within(settings.height, -LARGEST_FONT_HEIGHT, LARGEST_FONT_HEIGHT);
    font.lfWeight = within(settings.weight, 0, LARGEST_FONT_WEIGHT);
    font.lfQuality = (BYTE)settings.quality;
    font.lfPitchAndFamily = (BYTE)settings.pitchAndFamily;
    font.lfItalic = (BYTE)settings.italic;
    font.lfUnderline = (BYTE)settings.underline;
    font.lfStrikeOut = (BYTE)settings.strikeOut;
    font.lfCharSet = (BYTE)settings.charSet;
    memcpy(font.lfFaceName, settings.face, sizeof font.lfFaceName);
}

void readTools(const WCHAR* path)
{
    for (ToolSettings& settings : session->toolSettings) {
        WCHAR key[16];
        char value[SETTINGS_VALUE_SIZE];
        makeToolKey(key, settings.toolId);
        if (readValue(path, key, value)) parseToolValue(value, settings);
    }
}

// The older file numbered the tools one lower, Contrast excepted.
void readLegacyTools(const WCHAR* path)
{
    for (int slot = 0; slot < LEGACY_TOOL_COUNT; ++slot) {
        ToolSettings& settings = session->toolSettings[slot];
        WCHAR key[16];
        char value[SETTINGS_VALUE_SIZE];
        makeToolKey(key, settings.toolId == TOOL_CONTRAST ? settings.toolId : settings.toolId - 1);
        if (readValue(path, key, value)) parseLegacyToolValue(value, settings);
    }
}

bool fileExists(const WCHAR* path)
{
    const DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

}  // namespace

int readToolSettings()
{
    WCHAR path[MODULE_PATH_SIZE];
    if (!pathBesideModule(path, CURRENT_FILE)) return 1;
    const bool current = fileExists(path);
    if (!current && !pathBesideModule(path, LEGACY_FILE)) return 1;
    if (current) {
        readTools(path);
    } else {
        readLegacyTools(path);
    }
    readFont(path);
    return 1;
}

int writeToolSettings()
{
    WCHAR path[MODULE_PATH_SIZE];
    if (!pathBesideModule(path, CURRENT_FILE)) return 1;
    char value[SETTINGS_VALUE_SIZE];
    for (const ToolSettings& settings : session->toolSettings) {
        WCHAR key[16];
        makeToolKey(key, settings.toolId);
        formatToolValue(value, sizeof value, settings);
        writeValue(path, key, value);
    }
    formatFontValue(value, sizeof value, fontSettings(session->textFont));
    writeValue(path, FONT_KEY, value);
    return 1;
}
