#include "host/codecs/tiff_file.h"
#include "host/codecs/tiff_open.h"
#include "host/codecs/tiff_page.h"

PhotoStatus readTiff(const wchar_t* path, const RowSink& sink, PhotoFacts* facts)
{
    TIFF* file = openTiff(path, "r");
    if (!file) return PhotoStatus::NotAPhoto;
    const PhotoStatus status = readTiffPage(file, sink, facts);
    TIFFClose(file);
    return status;
}
