#include "tools/settings/settings_file.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <initializer_list>

#include "session/ground/module_path.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "tools/settings/settings_text.h"

constexpr WCHAR SECTION[] = L"Cursors";
constexpr WCHAR FONT_KEY[] = L"Font";
constexpr WCHAR CURRENT_FILE[] = L"KOVRTCH.INI";
constexpr WCHAR LEGACY_FILE[] = L"KOVRTOUCH.INI";
constexpr int LARGEST_FONT_HEIGHT = 4096;
constexpr int LARGEST_FONT_WEIGHT = 1000;
constexpr int LEGACY_TOOL_COUNT = TOOL_COUNT - 1;  // it did not know the outline brush

static_assert(FACE_NAME_SIZE == LF_FACESIZE, "a face name fits the font record");

constexpr WCHAR NOT_THERE[] = L"\x01";  // held by no file

static DWORD readWide(const WCHAR* path, const WCHAR* key, WCHAR (&value)[SETTINGS_VALUE_SIZE])
{
    return GetPrivateProfileStringW(SECTION, key, NOT_THERE, value, SETTINGS_VALUE_SIZE, path);
}

// A value that is there without a character is answered as a failure is; a key that nobody writes tells the two apart.
static bool isEmptyValue(const WCHAR* path, const WCHAR* key)
{
    WCHAR value[SETTINGS_VALUE_SIZE];
    return !readWide(path, key, value) && readWide(path, L"-", value);
}

// The wide calls take any path; the file itself stays in the system's ANSI code page. A key that is not there
// answers with a default that no file holds, so that it is not taken for one that could not be read.
static StoredValue readValue(const WCHAR* path, const WCHAR* key, char (&value)[SETTINGS_VALUE_SIZE])
{
    WCHAR wide[SETTINGS_VALUE_SIZE];
    memset(value, 0, sizeof value);
    if (!readWide(path, key, wide)) return VALUE_UNREAD;
    if (wcscmp(wide, NOT_THERE) == 0) return VALUE_MISSING;
    if (!WideCharToMultiByte(CP_ACP, 0, wide, -1, value, sizeof value, nullptr, nullptr)) {
        value[sizeof value - 1] = 0;  // more bytes than characters: cut
    }
    return value[0] ? VALUE_READ : VALUE_UNREAD;
}

static void writeValue(const WCHAR* path, const WCHAR* key, const char* value)
{
    WCHAR wide[SETTINGS_VALUE_SIZE];
    if (!MultiByteToWideChar(CP_ACP, 0, value, -1, wide, SETTINGS_VALUE_SIZE)) return;
    WritePrivateProfileStringW(SECTION, key, wide, path);
}

static void makeToolKey(WCHAR (&key)[16], uint32_t number)
{
    wsprintfW(key, L"T%d", (int)number);
}

static int within(int number, int minimum, int maximum)
{
    return number < minimum ? minimum : number > maximum ? maximum : number;
}

// Values stand at fixed positions: a fourth digit or a sign would move all that follow.
static int writable(int number)
{
    return within(number, 0, 999);
}

static FontSettings fontSettings(const LOGFONTA& font)
{
    FontSettings settings = {writable(abs((int)font.lfHeight)),
                             writable((int)font.lfWeight),
                             font.lfQuality,
                             font.lfPitchAndFamily,
                             font.lfItalic,
                             font.lfUnderline,
                             font.lfStrikeOut,
                             font.lfCharSet,
                             {}};
    memcpy(settings.face, font.lfFaceName, sizeof settings.face);
    settings.face[sizeof settings.face - 1] = 0;
    return settings;
}

static void takeFont(const char* value)
{
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

static StoredValue readFont(const WCHAR* path)
{
    char value[SETTINGS_VALUE_SIZE];
    const StoredValue found = readValue(path, FONT_KEY, value);
    if (found == VALUE_READ) takeFont(value);
    return found;
}

// Reads one tool's value from its key. `parse` is that of the file's layout.
static StoredValue readTool(const WCHAR* path, uint32_t number, ToolSettings& settings,
                            void (*parse)(const char* text, ToolSettings& settings))
{
    WCHAR key[16];
    char value[SETTINGS_VALUE_SIZE];
    makeToolKey(key, number);
    const StoredValue found = readValue(path, key, value);
    if (found == VALUE_READ) parse(value, settings);
    return found;
}

static void readCurrent(const WCHAR* path)
{
    StoredSettings& stored = sessionExtras.stored;
    for (int slot = 0; slot < TOOL_COUNT; ++slot) {
        ToolSettings& settings = session->toolSettings[slot];
        stored.toolValues[slot] = readTool(path, settings.toolId, settings, parseToolValue);
    }
    stored.fontValue = readFont(path);
}

// The older file numbered the tools one lower, Contrast excepted. Once there is a current file this one is read
// no more: so none is written while anything in this one could not be read.
static void readLegacy(const WCHAR* path)
{
    StoredSettings& stored = sessionExtras.stored;
    stored.fontValue = readFont(path);
    bool whole = stored.fontValue != VALUE_UNREAD;
    for (int slot = 0; slot < TOOL_COUNT; ++slot) {
        ToolSettings& settings = session->toolSettings[slot];
        const uint32_t number = settings.toolId == TOOL_CONTRAST ? settings.toolId : settings.toolId - 1;
        stored.toolValues[slot] =
            slot < LEGACY_TOOL_COUNT ? readTool(path, number, settings, parseLegacyToolValue) : VALUE_MISSING;
        whole = whole && stored.toolValues[slot] != VALUE_UNREAD;
    }
    stored.mayBeWritten = whole;
}

enum Presence { ABSENT, READABLE, UNREADABLE };

// Whatever keeps a file from being looked at or opened: it may be there.
static Presence presenceOf(const WCHAR* path)
{
    SetLastError(ERROR_SUCCESS);
    const DWORD attributes = GetFileAttributesW(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const DWORD error = GetLastError();
        return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? ABSENT : UNREADABLE;
    }
    if (attributes & FILE_ATTRIBUTE_DIRECTORY) return ABSENT;
    const DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file = CreateFileW(path, GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return UNREADABLE;
    CloseHandle(file);
    return READABLE;
}

static void readWhatIsThere()
{
    WCHAR path[MODULE_PATH_SIZE];
    if (!pathBesideModule(path, CURRENT_FILE)) return;
    const Presence current = presenceOf(path);
    if (current == READABLE) readCurrent(path);
    if (current == ABSENT && pathBesideModule(path, LEGACY_FILE)) readLegacy(path);
}

// Choosing the Text tool sets these fields of its block, whatever the user does.
static ToolSettings withoutForcedFields(ToolSettings settings)
{
    if (settings.toolId == TOOL_TEXT) settings.shape = settings.width = settings.lockLH = settings.widthEnabled = 0;
    return settings;
}

static bool toolHasChanged(int slot)
{
    const ToolSettings before = withoutForcedFields(sessionExtras.stored.tools[slot]);
    const ToolSettings now = withoutForcedFields(session->toolSettings[slot]);
    return memcmp(&before, &now, sizeof now) != 0;
}

static bool fontHasChanged()
{
    // Opening a line gives the font the Text tool's height.
    LOGFONTA now = session->textFont;
    now.lfHeight = sessionExtras.stored.font.lfHeight;
    return memcmp(&now, &sessionExtras.stored.font, sizeof now) != 0;
}

static void writeTool(const WCHAR* path, const ToolSettings& settings)
{
    WCHAR key[16];
    char value[SETTINGS_VALUE_SIZE];
    ToolSettings within = settings;
    for (uint32_t* number :
         {&within.shape, &within.edge, &within.width, &within.height, &within.lockLH, &within.widthEnabled,
          &within.heightEnabled, &within.showOutline, &within.spare, &within.opacity}) {
        *number = (uint32_t)writable((int)*number);
    }
    makeToolKey(key, settings.toolId);
    formatToolValue(value, sizeof value, within);
    writeValue(path, key, value);
}

static uint32_t ToolSettings::*const fields[] = {
    &ToolSettings::shape,         &ToolSettings::edge,   &ToolSettings::showOutline, &ToolSettings::width,
    &ToolSettings::height,        &ToolSettings::spare,  &ToolSettings::lockLH,      &ToolSettings::widthEnabled,
    &ToolSettings::heightEnabled, &ToolSettings::colour, &ToolSettings::opacity,
};

// What could not be read at the start is read once more, and only what was changed since goes over it. False when it
// still cannot be read: what is stored may be more than what was changed.
static bool mergeWithStored(const WCHAR* path, const ToolSettings& before, ToolSettings& settings)
{
    WCHAR key[16];
    ToolSettings there = before;
    makeToolKey(key, settings.toolId);
    if (readTool(path, settings.toolId, there, parseToolValue) == VALUE_UNREAD && !isEmptyValue(path, key))
        return false;
    for (uint32_t ToolSettings::*const field : fields) {
        if (settings.*field == before.*field) settings.*field = there.*field;
    }
    return true;
}

static void writeToolOfSlot(const WCHAR* path, int slot)
{
    ToolSettings settings = session->toolSettings[slot];
    const StoredSettings& stored = sessionExtras.stored;
    const bool unread = stored.toolValues[slot] == VALUE_UNREAD;
    if (unread && (!toolHasChanged(slot) || !mergeWithStored(path, stored.tools[slot], settings))) return;
    writeTool(path, settings);
}

int readToolSettings()
{
    StoredSettings& stored = sessionExtras.stored;
    stored = {};
    stored.mayBeWritten = true;
    readWhatIsThere();
    memcpy(stored.tools, session->toolSettings, sizeof stored.tools);
    stored.font = session->textFont;
    return 1;
}

int writeToolSettings()
{
    const StoredSettings& stored = sessionExtras.stored;
    WCHAR path[MODULE_PATH_SIZE];
    if (!stored.mayBeWritten || !pathBesideModule(path, CURRENT_FILE)) return 1;
    for (int slot = 0; slot < TOOL_COUNT; ++slot)
        writeToolOfSlot(path, slot);
    if (stored.fontValue != VALUE_UNREAD || fontHasChanged()) {
        char value[SETTINGS_VALUE_SIZE];
        formatFontValue(value, sizeof value, fontSettings(session->textFont));
        writeValue(path, FONT_KEY, value);
    }
    return 1;
}

void leaveToolSettings()
{
    sessionExtras.stored.mayBeWritten = false;
}
