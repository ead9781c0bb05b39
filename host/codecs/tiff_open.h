// Opening TIFF files by their names.
#pragma once

#include <tiffio.h>

// mode as for TIFFOpen. Null when it is no sound TIFF file; nothing is said on the console.
TIFF* openTiff(const wchar_t* path, const char* mode);
