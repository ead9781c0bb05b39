#include "host/codecs/tiff_open.h"

#include <cstdarg>

static void sayNothing(const char*, const char*, va_list) {}

TIFF* openTiff(const wchar_t* path, const char* mode)
{
    TIFFSetErrorHandler(sayNothing);
    TIFFSetWarningHandler(nullptr);
    return TIFFOpenW(path, mode);
}
