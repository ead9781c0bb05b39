#include "tools/settings/settings_text.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

constexpr size_t FIELD_WIDTH = 4;

static int numberAt(const char* text, size_t field)
{
    const size_t position = field * FIELD_WIDTH;
    if (strlen(text) <= position) return 0;
    const long long number = strtoll(text + position, nullptr, 10);
    return number > INT_MAX ? INT_MAX : number < INT_MIN ? INT_MIN : (int)number;
}

static uint32_t fieldAt(const char* text, size_t field)
{
    return (uint32_t)numberAt(text, field);
}

int formatToolValue(char* text, size_t size, const ToolSettings& s)
{
    return snprintf(text, size, "%3.3d,%3.3d,%3.3d,%3.3d,%3.3d,%3.3d,%3.3d,%3.3d,%3.3d,%3.3d,%ld", (int)s.shape,
                    (int)s.edge, (int)s.width, (int)s.height, (int)s.lockLH, (int)s.widthEnabled, (int)s.heightEnabled,
                    (int)s.showOutline, (int)s.spare, (int)s.opacity, (long)(int)s.colour);
}

void parseToolValue(const char* text, ToolSettings& s)
{
    uint32_t* const fields[] = {&s.shape,         &s.edge,        &s.width, &s.height,  &s.lockLH, &s.widthEnabled,
                                &s.heightEnabled, &s.showOutline, &s.spare, &s.opacity, &s.colour};
    for (size_t k = 0; k < sizeof fields / sizeof *fields; ++k)
        *fields[k] = fieldAt(text, k);
}

void parseLegacyToolValue(const char* text, ToolSettings& s)
{
    uint32_t* const fields[] = {&s.shape,         &s.width,       &s.height, &s.lockLH,  &s.widthEnabled,
                                &s.heightEnabled, &s.showOutline, &s.spare,  &s.opacity, &s.colour};
    for (size_t k = 0; k < sizeof fields / sizeof *fields; ++k)
        *fields[k] = fieldAt(text, k);
}

int formatFontValue(char* text, size_t size, const FontSettings& f)
{
    return snprintf(text, size, "%3.3d,%3.3d,%3.3d,%3.3d,%3.3d,%3.3d,%3.3d,%3.3d,%3.3d,%s", f.height, f.weight,
                    f.quality, f.pitchAndFamily, f.italic, f.underline, f.strikeOut, f.charSet, f.pitchAndFamily,
                    f.face);
}

void parseFontValue(const char* text, FontSettings& f)
{
    int* const fields[] = {&f.height,    &f.weight,    &f.quality, &f.pitchAndFamily, &f.italic,
                           &f.underline, &f.strikeOut, &f.charSet, &f.pitchAndFamily};
    constexpr size_t count = sizeof fields / sizeof *fields;
    for (size_t k = 0; k < count; ++k)
        *fields[k] = numberAt(text, k);
    const char* face = strlen(text) > count * FIELD_WIDTH ? text + count * FIELD_WIDTH : "";
    snprintf(f.face, sizeof f.face, "%s", face);
}
