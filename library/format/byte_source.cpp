#include "library/format/byte_source.h"

bool liesInside(const ByteSource& source, uint64_t offset, uint64_t count)
{
    return offset <= source.size && count <= source.size - offset;
}

bool readAt(const ByteSource& source, uint64_t offset, void* bytes, uint32_t count)
{
    return liesInside(source, offset, count) && source.read(source.context, offset, bytes, count);
}
