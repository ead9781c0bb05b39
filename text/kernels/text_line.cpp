#include "text/kernels/text_line.h"

#include <cstring>

int textLength(const TextLine& line)
{
    const void* end = memchr(line.buffer, 0, TEXT_BUFFER_SIZE);
    return end ? (int)((const char*)end - line.buffer) : TEXT_BUFFER_SIZE - 1;
}

bool isLeadByte(const LeadBytes& leads, char byte)
{
    const unsigned char value = (unsigned char)byte;
    for (int i = 0; i + 1 < (int)sizeof leads.ranges && leads.ranges[i]; i += 2) {
        if (value >= leads.ranges[i] && value <= leads.ranges[i + 1]) return true;
    }
    return false;
}

int nextCharacter(const TextLine& line, int index)
{
    const bool two = isLeadByte(line.leads, line.buffer[index]) && index + 1 < TEXT_BUFFER_SIZE;
    return index + (two && line.buffer[index + 1] ? 2 : 1);
}

// From the start, because the second byte of a character may have the value of a first one.
int previousCharacter(const TextLine& line, int index)
{
    if (index > textLength(line)) return index - 1;
    int previous = 0;
    for (int next = 0; next < index; next = nextCharacter(line, next))
        previous = next;
    return previous;
}

void moveCaretHome(const TextLine& line)
{
    *line.caret = 0;
}

void moveCaretEnd(const TextLine& line)
{
    *line.caret = textLength(line);
}

void moveCaretLeft(const TextLine& line)
{
    *line.caret = previousCharacter(line, *line.caret);
}

void moveCaretRight(const TextLine& line)
{
    if (*line.caret < textLength(line)) *line.caret = nextCharacter(line, *line.caret);
}

bool insertSpace(const TextLine& line)
{
    const int length = textLength(line), caret = *line.caret;
    if (length == 0 || caret >= length || length + 1 >= TEXT_BUFFER_SIZE) return false;
    memmove(line.buffer + caret + 1, line.buffer + caret, (size_t)(length - caret + 1));
    line.buffer[caret] = ' ';
    return true;
}

bool deleteAtCaret(const TextLine& line)
{
    const int length = textLength(line), caret = *line.caret;
    if (caret >= length) return false;
    const int next = nextCharacter(line, caret);
    memmove(line.buffer + caret, line.buffer + next, (size_t)(length - next + 1));
    return true;
}

bool backspace(const TextLine& line)
{
    if (textLength(line) == 0) return false;
    moveCaretLeft(line);
    deleteAtCaret(line);
    return true;
}

bool typeCharacter(const TextLine& line, const char* character, int size)
{
    const int length = textLength(line), caret = *line.caret;
    if (size == 1 && isLeadByte(line.leads, *character)) return false;
    if (caret < 0 || caret + size >= TEXT_BUFFER_SIZE) return false;
    if (caret < length) {
        const int next = nextCharacter(line, caret);
        if (length + size - (next - caret) >= TEXT_BUFFER_SIZE) return false;
        memmove(line.buffer + caret + size, line.buffer + next, (size_t)(length - next + 1));
    }
    memcpy(line.buffer + caret, character, (size_t)size);
    if (caret == length) line.buffer[caret + size] = 0;  // what was typed behind the end stays hidden
    *line.caret += size;
    return true;
}

void clearLine(const TextLine& line)
{
    memset(line.buffer, 0, TEXT_BUFFER_SIZE);
    *line.caret = 0;
}
