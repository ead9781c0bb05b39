#include "library/format/list_file.h"

#include <cstdio>

int parseCounter(const char* text, size_t length)
{
    int number = 0;
    for (size_t i = 0; i < length && i < COUNTER_DIGITS && text[i] >= '0' && text[i] <= '9'; ++i) {
        number = number * 10 + (text[i] - '0');
    }
    return number;
}

void formatCounter(char (&text)[LIST_TEXT_SIZE], int number)
{
    snprintf(text, sizeof text, "%03d", number);
    text[COUNTER_DIGITS] = 0;
}

void formatSelectionName(char (&text)[LIST_TEXT_SIZE], int number)
{
    snprintf(text, sizeof text, "seld_%03d.tif", number);
}

void formatListLine(char (&text)[LIST_TEXT_SIZE], int number)
{
    snprintf(text, sizeof text, "seld_%03d.tif\r\n", number);
}
