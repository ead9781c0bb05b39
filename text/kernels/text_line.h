// The line being typed: a zero-terminated byte string in a fixed buffer, and the caret in it.
//
// The caret counts bytes, and every step of it and every edit takes a whole character, of as many bytes as the code
// page gives it: no part of a character is ever left in the line. The caret can stand one past the
// terminator (a click right of the text leaves it there): what is typed there lands behind the terminator and does not
// show. Nothing is ever read or written outside the buffer.
#pragma once

constexpr int TEXT_BUFFER_SIZE = 8192;  // terminator included

constexpr int LARGEST_CHARACTER = 4;  // bytes

// How the bytes of a code page make characters.
enum CharacterForm {
    UP_TO_TWO_BYTES,  // a lead byte and any other
    UTF_8,            // code page 65001
    GB_18030,         // code page 54936: one, two or four bytes
};

// The bytes that begin a character of two bytes, as the system lists them for a code page: pairs of a first and a
// last one, ended by a pair of zeros. Without any pair every byte is a character. The system lists none for the other
// forms, whose lead bytes are fixed.
struct LeadBytes {
    unsigned char ranges[12];
    CharacterForm form = UP_TO_TWO_BYTES;
};

struct TextLine {
    char* buffer;  // TEXT_BUFFER_SIZE bytes, borrowed
    int* caret;
    LeadBytes leads = {};
};

// Whether the byte is no character by itself.
bool isLeadByte(const LeadBytes& leads, char byte);

// Bytes of the character that begins with these 1 to LARGEST_CHARACTER bytes; 0 when it takes more to tell or to end
// it. Bytes that begin no character count for themselves.
int characterSize(const LeadBytes& leads, const char* bytes, int count);

int textLength(const TextLine& line);

// Where the character behind the one at `index` begins (`index` up to the length), and the one before; the start
// has none before it. Behind the end every byte counts for itself.
int nextCharacter(const TextLine& line, int index);
int previousCharacter(const TextLine& line, int index);

void moveCaretHome(const TextLine& line);
void moveCaretEnd(const TextLine& line);
void moveCaretLeft(const TextLine& line);   // not below the start
void moveCaretRight(const TextLine& line);  // not from the end on

// Shifts the rest right and puts a space at the caret. False (no change) in an empty line, at or behind
// the end, and when the buffer is full.
bool insertSpace(const TextLine& line);

// Removes the character at the caret. False at or behind the end.
bool deleteAtCaret(const TextLine& line);

// Moves the caret one left, if it can, and removes the character that it then stands at: at the start of
// the line that is the first one. False in an empty line.
bool backspace(const TextLine& line);

// Writes a character of `size` bytes over the one at the caret, or extends the string at its end, and moves on.
// False when the buffer is full, and for a part of a character.
bool typeCharacter(const TextLine& line, const char* character, int size);

void clearLine(const TextLine& line);
