#include "text/text_line.h"

#include <cstring>

int textLength(const TextLine& line)
{
    const void* end = memchr(line.buffer, 0, TEXT_BUFFER_SIZE);
    return end ? (int)((const char*)end - line.buffer) : TEXT_BUFFER_SIZE - 1;
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
    if (*line.caret > 0) --*line.caret;
}

void moveCaretRight(const TextLine& line)
{
    if (*line.caret < textLength(line)) ++*line.caret;
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
    memmove(line.buffer + caret, line.buffer + caret + 1, (size_t)(length - caret));
    return true;
}

bool backspace(const TextLine& line)
{
    if (textLength(line) == 0) return false;
    moveCaretLeft(line);
    deleteAtCaret(line);
    return true;
}

bool typeCharacter(const TextLine& line, char character)
{
    const int length = textLength(line), caret = *line.caret;
    if (caret < 0 || caret + 1 >= TEXT_BUFFER_SIZE) return false;
    line.buffer[caret] = character;
    if (caret == length) line.buffer[caret + 1] = 0; // what was typed behind the end stays hidden
    ++*line.caret;
    return true;
}

void clearLine(const TextLine& line)
{
    memset(line.buffer, 0, TEXT_BUFFER_SIZE);
    *line.caret = 0;
}
