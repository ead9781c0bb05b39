#include "host/codecs/tiff_new.h"

#include "host/codecs/color_bridge.h"
#include "host/codecs/tiff_open.h"
#include "host/codecs/tiff_page.h"

#include <algorithm>

// Words and blocks that say nothing about how the pixels lie.
static void copyDescriptions(TIFF* from, TIFF* to)
{
    static const ttag_t words[] = {TIFFTAG_DOCUMENTNAME, TIFFTAG_IMAGEDESCRIPTION, TIFFTAG_MAKE,     TIFFTAG_MODEL,
                                   TIFFTAG_PAGENAME,     TIFFTAG_SOFTWARE,         TIFFTAG_DATETIME, TIFFTAG_ARTIST,
                                   TIFFTAG_HOSTCOMPUTER, TIFFTAG_COPYRIGHT};
    static const ttag_t blocks[] = {TIFFTAG_RICHTIFFIPTC, TIFFTAG_PHOTOSHOP};
    char* text = nullptr;
    for (ttag_t tag : words)
        if (TIFFGetField(from, tag, &text)) TIFFSetField(to, tag, text);
    uint32_t size = 0;
    void* bytes = nullptr;
    for (ttag_t tag : blocks)
        if (TIFFGetField(from, tag, &size, &bytes)) TIFFSetField(to, tag, size, bytes);
    float* values = nullptr;
    for (ttag_t tag : {TIFFTAG_WHITEPOINT, TIFFTAG_PRIMARYCHROMATICITIES})
        if (TIFFGetField(from, tag, &values)) TIFFSetField(to, tag, values);
    uint16_t order = 0, page = 0, pages = 0;
    if (TIFFGetField(from, TIFFTAG_FILLORDER, &order)) TIFFSetField(to, TIFFTAG_FILLORDER, FILLORDER_MSB2LSB);
    if (TIFFGetField(from, TIFFTAG_PAGENUMBER, &page, &pages)) TIFFSetField(to, TIFFTAG_PAGENUMBER, page, pages);
}

static uint16_t newCompression(TIFF* original)
{
    const uint16_t compression = original ? tiffLayout(original).compression : (uint16_t)COMPRESSION_LZW;
    const bool usable = compression == COMPRESSION_NONE || compression == COMPRESSION_PACKBITS ||
                        compression == COMPRESSION_DEFLATE || compression == COMPRESSION_ADOBE_DEFLATE;
    return usable ? compression : (uint16_t)COMPRESSION_LZW;
}

static void describePage(TIFF* file, TIFF* original, const EditedPhoto& photo, const PhotoFacts& facts)
{
    const uint16_t compression = newCompression(original);
    TIFFSetField(file, TIFFTAG_IMAGEWIDTH, (uint32_t)photo.width);
    TIFFSetField(file, TIFFTAG_IMAGELENGTH, (uint32_t)photo.height);
    TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(file, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(file, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(file, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(file, TIFFTAG_COMPRESSION, compression);
    if (compression != COMPRESSION_NONE && compression != COMPRESSION_PACKBITS)
        TIFFSetField(file, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, (uint32_t)std::max(1, (1 << 18) / (photo.width * 3)));
    if (photo.across > 0 && photo.down > 0) {
        TIFFSetField(file, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
        TIFFSetField(file, TIFFTAG_XRESOLUTION, photo.across * 0.0254);
        TIFFSetField(file, TIFFTAG_YRESOLUTION, photo.down * 0.0254);
    }
    if (!facts.profile.empty() && !facts.grey && !facts.inks)
        TIFFSetField(file, TIFFTAG_ICCPROFILE, (uint32_t)facts.profile.size(), facts.profile.data());
    if (!facts.xmp.empty()) TIFFSetField(file, TIFFTAG_XMLPACKET, (uint32_t)facts.xmp.size(), facts.xmp.data());
    if (original) copyDescriptions(original, file);
}

static bool writePage(TIFF* file, const EditedPhoto& photo, const PhotoFacts& facts)
{
    ColorBridge bridge = openBridge(facts.grey || facts.inks ? std::vector<uint8_t>() : facts.profile, 0, false);
    const UprightTarget upright = editedInFile(photo, 1);
    std::vector<uint8_t> row((size_t)photo.width * 3);
    bool done = true;
    for (int y = 0; y < photo.height && done; ++y) {
        gatherRows(upright, y, 1, row.data(), 0);
        storeColors(bridge, row.data(), photo.width);
        for (size_t i = 0; i < row.size(); i += 3)
            std::swap(row[i], row[i + 2]);
        done = TIFFWriteScanline(file, row.data(), (uint32_t)y, 0) == 1;
    }
    closeBridge(&bridge);
    return done;
}

bool writeNewTiff(const wchar_t* output, const EditedPhoto& photo, const PhotoFacts& facts, const wchar_t* original)
{
    const uint64_t size = (uint64_t)packedRowSize(photo.width) * (uint64_t)photo.height;
    TIFF* file = openTiff(output, size > 0xF0000000u ? "w8" : "w");
    TIFF* from = original ? openTiff(original, "r") : nullptr;
    bool done = false;
    if (file) {
        describePage(file, from, photo, facts);
        done = writePage(file, photo, facts) && TIFFFlush(file);
        TIFFClose(file);
    }
    if (from) TIFFClose(from);
    return done;
}
