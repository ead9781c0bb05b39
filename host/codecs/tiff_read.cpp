#include "host/codecs/tiff_file.h"
#include "host/codecs/tiff_page.h"

#include <cmath>

namespace {

long pelsPerMetre(TIFF* file, ttag_t tag)
{
    float value = 0;
    uint16_t unit = RESUNIT_INCH;
    if (!TIFFGetField(file, tag, &value) || !(value > 0 && value < 1e6)) return 0;
    TIFFGetFieldDefaulted(file, TIFFTAG_RESOLUTIONUNIT, &unit);
    return unit == RESUNIT_INCH         ? std::lround(value / 0.0254)
           : unit == RESUNIT_CENTIMETER ? std::lround(value * 100)
                                        : 0;
}

}  // namespace

PhotoStatus readTiff(const wchar_t* path, const RowSink& sink, PhotoFacts* facts)
{
    TIFF* file = openTiff(path, "r");
    if (!file) return PhotoStatus::NotAPhoto;
    const TiffLayout layout = tiffLayout(file);
    PhotoStatus status = layout.width && layout.height ? PhotoStatus::Ok : PhotoStatus::NotAPhoto;
    if (status == PhotoStatus::Ok && !packedPhotoSize(layout.width, layout.height)) status = PhotoStatus::TooLarge;
    if (status == PhotoStatus::Ok) {
        collectTiffFacts(file, facts);
        const PhotoShape shape = {(int)layout.width, (int)layout.height, facts->orientation,
                                  pelsPerMetre(file, TIFFTAG_XRESOLUTION), pelsPerMetre(file, TIFFTAG_YRESOLUTION)};
        status = sink.begin(sink.context, shape);
    }
    if (status == PhotoStatus::Ok) status = eachTiffBand(file, *facts, sink);
    TIFFClose(file);
    return status;
}
