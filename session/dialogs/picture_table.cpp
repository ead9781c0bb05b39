#include "session/dialogs/picture_table.h"

#include <cstring>

constexpr size_t RECORD_SIZE = 8;  // the head (four counts) and every entry alike

static uint16_t wordAt(const void* table, size_t index)
{
    const uint8_t* bytes = (const uint8_t*)table + index * 2;
    return (uint16_t)(bytes[0] | bytes[1] << 8);
}

size_t pictureEntryCount(const void* table, size_t size)
{
    if (!table || size < RECORD_SIZE) return 0;
    const size_t promised = wordAt(table, 0);
    const size_t present = size / RECORD_SIZE - 1;
    return promised < present ? promised : present;
}

PictureEntry pictureEntry(const void* table, size_t index)
{
    const size_t word = (index + 1) * 4;
    return {wordAt(table, word), {wordAt(table, word + 1), wordAt(table, word + 2), wordAt(table, word + 3)}};
}
