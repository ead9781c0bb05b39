#include "host/codecs/tiff_page.h"

#include "host/codecs/color_bridge.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstring>

constexpr uint32_t COMFORTABLE_BAND = 64;
constexpr uint64_t COMFORTABLE_BYTES = 64 << 20, MANY_BYTES = 256 << 20;

static long pelsPerMetre(TIFF* file, ttag_t tag)
{
    float value = 0;
    uint16_t unit = RESUNIT_INCH;
    if (!TIFFGetField(file, tag, &value) || !(value > 0 && value < 1e6)) return 0;
    TIFFGetFieldDefaulted(file, TIFFTAG_RESOLUTIONUNIT, &unit);
    return unit == RESUNIT_INCH         ? std::lround(value / 0.0254)
           : unit == RESUNIT_CENTIMETER ? std::lround(value * 100)
                                        : 0;
}

static bool outOfMemory;

// The library tells want of memory from damage by its words alone.
static void noteError(const char*, const char* words, va_list)
{
    outOfMemory = outOfMemory || strstr(words, "memory") || strstr(words, "No space");
}

// Rows that are decoded together: whole strips or rows of tiles. Of very large ones a quarter, though the library
// begins each time at the strip's first row.
static uint32_t bandHeight(TIFF* file, const TiffLayout& layout)
{
    uint32_t unit = layout.height;
    if (TIFFIsTiled(file))
        TIFFGetField(file, TIFFTAG_TILELENGTH, &unit);
    else
        TIFFGetFieldDefaulted(file, TIFFTAG_ROWSPERSTRIP, &unit);
    unit = std::max(1u, std::min(unit, layout.height));
    const uint64_t rowBytes = (uint64_t)layout.width * 4;
    if (unit * rowBytes > MANY_BYTES) return (unit + 3) / 4;
    const uint32_t most =
        (uint32_t)std::max<uint64_t>(1, std::min<uint64_t>(COMFORTABLE_BAND, COMFORTABLE_BYTES / rowBytes));
    return std::min((most + unit - 1) / unit * unit, layout.height);
}

// The library gives red, green, blue and alpha, the first three multiplied by the last.
static void layOverWhite(uint8_t* pixels, size_t count)
{
    for (; count > 0; --count, pixels += 4) {
        if (pixels[3] == 255) {
            std::swap(pixels[0], pixels[2]);
            continue;
        }
        const uint8_t white = (uint8_t)(255 - pixels[3]), red = pixels[0];
        pixels[0] = (uint8_t)std::min(pixels[2] + white, 255);
        pixels[1] = (uint8_t)std::min(pixels[1] + white, 255);
        pixels[2] = (uint8_t)std::min(red + white, 255);
        pixels[3] = 255;
    }
}

static PhotoStatus handBands(TIFF* file, TIFFRGBAImage* image, const TiffLayout& layout, const ColorBridge& bridge,
                             const RowSink& sink)
{
    const uint32_t rows = bandHeight(file, layout);
    const LargeBytes memory = allocateLarge((uint64_t)layout.width * rows * 4);
    if (!memory) return PhotoStatus::TooLarge;
    uint8_t* band = memory.get();
    outOfMemory = false;
    TIFFSetErrorHandler(noteError);
    const ptrdiff_t stride = (ptrdiff_t)layout.width * 4;
    bool done = true;
    for (uint32_t row = 0; row < layout.height && done; row += rows) {
        const uint32_t count = std::min(rows, layout.height - row);
        image->row_offset = (int)row;
        done = TIFFRGBAImageGet(image, (uint32_t*)band, layout.width, count);
        if (!done) break;
        layOverWhite(band, (size_t)layout.width * count);
        for (uint32_t i = 0; i < count; ++i)
            showColors(bridge, band + (ptrdiff_t)i * stride, (int)layout.width);
        done = sink.take(sink.context, band, stride, (int)row, (int)count);
    }
    if (done) return PhotoStatus::Ok;
    return outOfMemory ? PhotoStatus::TooLarge : PhotoStatus::NotAPhoto;
}

TiffLayout tiffLayout(TIFF* file)
{
    TiffLayout layout;
    TIFFGetField(file, TIFFTAG_IMAGEWIDTH, &layout.width);
    TIFFGetField(file, TIFFTAG_IMAGELENGTH, &layout.height);
    TIFFGetFieldDefaulted(file, TIFFTAG_BITSPERSAMPLE, &layout.bits);
    TIFFGetFieldDefaulted(file, TIFFTAG_SAMPLESPERPIXEL, &layout.samples);
    TIFFGetFieldDefaulted(file, TIFFTAG_COMPRESSION, &layout.compression);
    TIFFGetFieldDefaulted(file, TIFFTAG_PLANARCONFIG, &layout.planar);
    TIFFGetFieldDefaulted(file, TIFFTAG_SAMPLEFORMAT, &layout.format);
    TIFFGetFieldDefaulted(file, TIFFTAG_ORIENTATION, &layout.orientation);
    TIFFGetField(file, TIFFTAG_PHOTOMETRIC, &layout.photometric);
    uint16_t count = 0, *kinds = nullptr;
    if (TIFFGetField(file, TIFFTAG_EXTRASAMPLES, &count, &kinds) && count > 0) layout.alphaKind = kinds[0];
    layout.alpha = layout.alphaKind == EXTRASAMPLE_ASSOCALPHA || layout.alphaKind == EXTRASAMPLE_UNASSALPHA;
    return layout;
}

bool canEditSamples(const TiffLayout& layout)
{
    static const uint16_t exact[] = {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_PACKBITS, COMPRESSION_DEFLATE,
                                     COMPRESSION_ADOBE_DEFLATE};
    const bool grey = layout.photometric == PHOTOMETRIC_MINISBLACK || layout.photometric == PHOTOMETRIC_MINISWHITE;
    // Of separate planes those with alpha, which are laid over white, cannot be changed one by one here, nor turned.
    const bool together = layout.planar == PLANARCONFIG_CONTIG || (!layout.alpha && layout.orientation <= 1);
    return (layout.bits == 8 || layout.bits == 16) && layout.format == SAMPLEFORMAT_UINT && together &&
           (grey || (layout.photometric == PHOTOMETRIC_RGB && layout.samples >= 3)) &&
           std::find(std::begin(exact), std::end(exact), layout.compression) != std::end(exact);
}

void collectTiffFacts(TIFF* file, PhotoFacts* facts)
{
    const TiffLayout layout = tiffLayout(file);
    facts->orientation = layout.orientation >= 1 && layout.orientation <= 8 ? layout.orientation : 1;
    facts->grey = layout.photometric == PHOTOMETRIC_MINISBLACK || layout.photometric == PHOTOMETRIC_MINISWHITE;
    facts->palette = layout.photometric == PHOTOMETRIC_PALETTE;
    facts->inks = layout.photometric == PHOTOMETRIC_SEPARATED;
    facts->deep = layout.bits > 8;
    facts->alpha = layout.alpha;
    facts->inPlace = canEditSamples(layout);
    uint32_t size = 0;
    void* bytes = nullptr;
    if (TIFFGetField(file, TIFFTAG_ICCPROFILE, &size, &bytes) && bytes)
        facts->profile.assign((uint8_t*)bytes, (uint8_t*)bytes + size);
    if (TIFFGetField(file, TIFFTAG_XMLPACKET, &size, &bytes) && bytes)
        facts->xmp.assign((uint8_t*)bytes, (uint8_t*)bytes + size);
    uint64_t place = 0;
    facts->camera = TIFFGetField(file, TIFFTAG_EXIFIFD, &place) || TIFFGetField(file, TIFFTAG_GPSIFD, &place);
    char* text = nullptr;
    facts->notes = TIFFGetField(file, TIFFTAG_IMAGEDESCRIPTION, &text) || TIFFGetField(file, TIFFTAG_ARTIST, &text) ||
                   TIFFGetField(file, TIFFTAG_COPYRIGHT, &text) ||
                   TIFFGetField(file, TIFFTAG_RICHTIFFIPTC, &size, &bytes) ||
                   TIFFGetField(file, TIFFTAG_PHOTOSHOP, &size, &bytes);
    facts->pages = (int)TIFFNumberOfDirectories(file);
    TIFFSetDirectory(file, 0);
}

PhotoStatus eachTiffBand(TIFF* file, const PhotoFacts& facts, const RowSink& sink)
{
    const TiffLayout layout = tiffLayout(file);
    char message[1024];
    TIFFRGBAImage image;
    if (!TIFFRGBAImageOK(file, message) || !TIFFRGBAImageBegin(&image, file, 1, message)) return PhotoStatus::NotAPhoto;
    image.orientation = image.req_orientation = ORIENTATION_TOPLEFT;  // turned by whom the rows are for
    ColorBridge bridge = openBridge(facts.inks || facts.grey ? std::vector<uint8_t>() : facts.profile, 0, false);
    const PhotoStatus status = handBands(file, &image, layout, bridge, sink);
    closeBridge(&bridge);
    TIFFRGBAImageEnd(&image);
    return status;
}

PhotoStatus readTiffPage(TIFF* file, const RowSink& sink, PhotoFacts* facts)
{
    const TiffLayout layout = tiffLayout(file);
    PhotoStatus status = layout.width && layout.height ? PhotoStatus::Ok : PhotoStatus::NotAPhoto;
    if (status == PhotoStatus::Ok && !packedPhotoSize(layout.width, layout.height)) status = PhotoStatus::TooLarge;
    if (status == PhotoStatus::Ok) {
        collectTiffFacts(file, facts);
        const PhotoShape shape = {(int)layout.width, (int)layout.height, facts->orientation,
                                  pelsPerMetre(file, TIFFTAG_XRESOLUTION), pelsPerMetre(file, TIFFTAG_YRESOLUTION)};
        status = sink.begin(sink.context, shape);
    }
    return status == PhotoStatus::Ok ? eachTiffBand(file, *facts, sink) : status;
}
