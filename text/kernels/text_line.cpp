#include "text/kernels/text_line.h"

#include <cstring>

int textLength(const TextLine& line)
{
    const void* end = memchr(line.buffer, 0, TEXT_BUFFER_SIZE);
    return end ? (int)((const char*)end - line.buffer) : TEXT_BUFFER_SIZE - 1;
}

static bool isBetween(char byte, int first, int last)
{
    return (unsigned char)byte >= first && (unsigned char)byte <= last;
}

static int utf8Size(const char* bytes, int count)
{
    int size = isBetween(*bytes, 0xC2, 0xDF)   ? 2
               : isBetween(*bytes, 0xE0, 0xEF) ? 3
               : isBetween(*bytes, 0xF0, 0xF4) ? 4
                                               : 1;
    for (int i = 1; i < size && i < count; ++i)
        if (!isBetween(bytes[i], 0x80, 0xBF)) size = 1;
    return size > count ? 0 : size;
}

// A digit as the second byte tells that there are four.
static int gb18030Size(const char* bytes, int count)
{
    if (!isBetween(*bytes, 0x81, 0xFE)) return 1;
    if (count < 2) return 0;
    if (!isBetween(bytes[1], '0', '9')) return isBetween(bytes[1], 0x40, 0xFE) ? 2 : 1;
    if (count > 2 && !isBetween(bytes[2], 0x81, 0xFE)) return 1;
    if (count > 3 && !isBetween(bytes[3], '0', '9')) return 1;
    return count < 4 ? 0 : 4;
}

int characterSize(const LeadBytes& leads, const char* bytes, int count)
{
    if (leads.form == UTF_8) return utf8Size(bytes, count);
    if (leads.form == GB_18030) return gb18030Size(bytes, count);
    if (!isLeadByte(leads, *bytes)) return 1;
    return count < 2 ? 0 : 2;
}

bool isLeadByte(const LeadBytes& leads, char byte)
{
    const unsigned char value = (unsigned char)byte;
    if (leads.form == UTF_8) return value >= 0x80;
    if (leads.form == GB_18030) return isBetween(byte, 0x81, 0xFE);
    for (int i = 0; i + 1 < (int)sizeof leads.ranges && leads.ranges[i]; i += 2) {
        if (value >= leads.ranges[i] && value <= leads.ranges[i + 1]) return true;
    }
    return false;
}

int nextCharacter(const TextLine& line, int index)
{
    int count = 1;
    while (count < LARGEST_CHARACTER && index + count < TEXT_BUFFER_SIZE && line.buffer[index + count])
        ++count;
    const int size = characterSize(line.leads, line.buffer + index, count);
    return index + (size ? size : 1);
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
    if (size == 1 ? isLeadByte(line.leads, *character) : characterSize(line.leads, character, size) != size)
        return false;
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
