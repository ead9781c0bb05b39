// A second telling of the line of text: its buffer, caret and origin, and what it stamps, with the system's own
// drawing and stepping. Reads the font from the session's record.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "text/kernels/text_line.h"

typedef std::vector<uint8_t> Bytes;

struct TextModel {
    int width, height;  // of the image
    Bytes image;        // its rows, the bottom row first, padded to 4 bytes
    COLORREF colour;
    int opacity, lineHeight;
    UINT codePage;  // of the font

    bool open;
    char buffer[TEXT_BUFFER_SIZE];
    int caret, originX, originY, caretX;
    char lead;  // the first byte of a double-byte character whose second one has not come yet
};

int strideOf(int width);
int lengthOf(const TextModel& model);

// A device context of the test's own with the font as the tool must make it.
struct OwnContext {
    HDC dc;
    HFONT font;
    HGDIOBJ oldFont;
};

OwnContext ownContext(int height);
void release(const OwnContext& context);

// Of the first so many bytes.
int ownWidth(const TextModel& model, int count);

// The line as the system draws it: one byte a pixel, 1 where there is text.
Bytes ownRendering(const TextModel& model, const char* text);

// What the session's thread hears of, and the stamp by itself.
void modelClick(TextModel& model, int x, int y);
void modelKey(TextModel& model, UINT key);
void modelChar(TextModel& model, UINT code);
void modelStamp(TextModel& model);
