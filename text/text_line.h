// The line being typed: a zero-terminated byte string in a fixed buffer, and the caret in it.
//
// The caret counts bytes. It can stand one past the terminator (a click right of the text leaves it
// there): what is typed there lands behind the terminator and does not show. Nothing is ever read or
// written outside the buffer.
#pragma once

constexpr int TEXT_BUFFER_SIZE = 8192; // terminator included

struct TextLine {
    char* buffer; // TEXT_BUFFER_SIZE bytes, borrowed
    int* caret;
};

int textLength(const TextLine& line);

void moveCaretHome(const TextLine& line);
void moveCaretEnd(const TextLine& line);
void moveCaretLeft(const TextLine& line);  // not below the start
void moveCaretRight(const TextLine& line); // not from the end on

// Shifts the rest right and puts a space at the caret. False (no change) in an empty line, at or behind
// the end, and when the buffer is full.
bool insertSpace(const TextLine& line);

// Removes the character at the caret. False at or behind the end.
bool deleteAtCaret(const TextLine& line);

// Moves the caret one left, if it can, and removes the character that it then stands at: at the start of
// the line that is the first one. False in an empty line.
bool backspace(const TextLine& line);

// Writes a character over the one at the caret, or extends the string at its end, and moves on. False
// when the buffer is full.
bool typeCharacter(const TextLine& line, char character);

void clearLine(const TextLine& line);
