// The values of the settings file as text: numbers at fixed positions, four characters each.
#pragma once

#include <cstddef>

#include "session/ground/tool_table.h"

constexpr size_t SETTINGS_VALUE_SIZE = 128;  // longest value that is read, terminator included
constexpr size_t FACE_NAME_SIZE = 32;        // of a font record, terminator included

struct FontSettings {
    int height, weight, quality, pitchAndFamily, italic, underline, strikeOut, charSet;
    char face[FACE_NAME_SIZE];
};

// A value: shape, edge, width, height, lockLH, widthEnabled, heightEnabled, showOutline, spare, opacity
// ("%3.3d," each), colour ("%ld"). Returns its length; never writes past `size`.
int formatToolValue(char* text, size_t size, const ToolSettings& settings);

// Reads number k at character 4k, whatever stands between; what lies behind the text's end reads as 0,
// numbers beyond 32 bits as the nearest bound. toolId is left alone.
void parseToolValue(const char* text, ToolSettings& settings);

// The older layout, which had no edge; edge is left alone.
void parseLegacyToolValue(const char* text, ToolSettings& settings);

// Height, weight, quality, pitch and family, italic, underline, strike-out, character set, pitch and
// family again, then the face name. When read, the ninth number replaces the fourth, and the name is cut
// to what a font record holds.
int formatFontValue(char* text, size_t size, const FontSettings& font);
void parseFontValue(const char* text, FontSettings& font);
