#include "host/codecs/tiff_turn.h"

#include "host/codecs/tiff_directory.h"
#include "host/codecs/tiff_open.h"

#include "host/photo/exif_edit.h"

#include <algorithm>
#include <cstring>

struct NativePage {
    LargeBytes samples;
    TiffLayout layout;
    ptrdiff_t stride = 0;
    int pixel = 0;  // bytes
    uint16_t predictor = PREDICTOR_NONE, fillOrder = FILLORDER_MSB2LSB;
    bool hasFillOrder = false;
};

// The whole page in its own samples, edited, as it lies in the file.
static PhotoStatus readEdited(TIFF* file, const Changes& changes, const ColorBridge& bridge, NativePage* page)
{
    const TiffLayout& layout = page->layout = tiffLayout(file);
    page->pixel = layout.samples * layout.bits / 8;
    page->stride = (ptrdiff_t)layout.width * page->pixel;
    page->samples = allocateLarge((uint64_t)page->stride * layout.height);
    if (!page->samples) return PhotoStatus::TooLarge;
    const PieceUser take = [&](const Piece& piece, uint8_t* buffer) {
        if (readTiffPiece(file, piece, buffer) < 0) return false;
        if (pieceChanged(piece, changes)) patchPiece(layout, piece, changes, bridge, buffer);
        for (int y = 0; y < piece.height; ++y)
            memcpy(page->samples.get() + (piece.top + y) * page->stride + (ptrdiff_t)piece.left * page->pixel,
                   buffer + (ptrdiff_t)y * piece.pitch * page->pixel, (size_t)piece.width * (size_t)page->pixel);
        return true;
    };
    return eachTiffPiece(file, layout, take) ? PhotoStatus::Ok : PhotoStatus::NotAPhoto;
}

static void describeTurned(TIFF* file, const NativePage& page, const Changes& changes, std::vector<uint8_t> xmp)
{
    const TiffLayout& layout = page.layout;
    const bool swapped = orientationSwapsSides(changes.edited.orientation);
    const uint32_t width = swapped ? layout.height : layout.width;
    TIFFSetField(file, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(file, TIFFTAG_IMAGELENGTH, swapped ? layout.width : layout.height);
    TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, layout.bits);
    TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, layout.samples);
    TIFFSetField(file, TIFFTAG_PHOTOMETRIC, layout.photometric);
    TIFFSetField(file, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(file, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(file, TIFFTAG_COMPRESSION, layout.compression);
    if (page.predictor != PREDICTOR_NONE) TIFFSetField(file, TIFFTAG_PREDICTOR, page.predictor);
    if (page.hasFillOrder) TIFFSetField(file, TIFFTAG_FILLORDER, page.fillOrder);
    TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, std::max(1u, (1u << 18) / (width * (uint32_t)page.pixel)));
    if (xmp.empty()) return;
    noteUprightInXmp(xmp.data(), xmp.size());
    TIFFSetField(file, TIFFTAG_XMLPACKET, (uint32_t)xmp.size(), xmp.data());
}

// As the file's last page.
static bool appendTurned(const wchar_t* output, const NativePage& page, const Changes& changes, const PhotoFacts& facts)
{
    TIFF* file = openTiff(output, "a");
    if (!file) return false;
    describeTurned(file, page, changes, facts.xmp);
    const TiffLayout& layout = page.layout;
    const bool swapped = orientationSwapsSides(changes.edited.orientation);
    const uint32_t width = swapped ? layout.height : layout.width, height = swapped ? layout.width : layout.height;
    std::vector<uint8_t> row((size_t)width * (size_t)page.pixel);
    bool done = true;
    for (uint32_t y = 0; y < height && done; ++y) {
        turnNativeRow(page.samples.get(), page.stride, page.pixel, (int)layout.width, (int)layout.height,
                      changes.edited.orientation, (int)y, row.data());
        done = TIFFWriteScanline(file, row.data(), y, 0) == 1;
    }
    done = done && TIFFWriteDirectory(file);
    TIFFClose(file);
    return done;
}

static bool finish(const wchar_t* output, bool swapped)
{
    FILE* file = _wfopen(output, L"r+b");
    const bool done = file && putTurnedPageFirst(file, swapped);
    return file && fclose(file) == 0 && done;
}

static bool hasSoundPages(const wchar_t* path)
{
    FILE* file = _wfopen(path, L"rb");
    const bool sound = file && pagesEnd(file);
    if (file) fclose(file);
    return sound;
}

PhotoStatus turnTiffPage(const wchar_t* output, const wchar_t* original, const PhotoFacts& facts,
                         const Changes& changes)
{
    if (!hasSoundPages(original)) return PhotoStatus::NotAPhoto;
    TIFF* file = openTiff(original, "r");
    if (!file) return PhotoStatus::Missing;
    NativePage page;
    TIFFGetField(file, TIFFTAG_PREDICTOR, &page.predictor);
    page.hasFillOrder = TIFFGetField(file, TIFFTAG_FILLORDER, &page.fillOrder) == 1;
    ColorBridge bridge = openBridge(facts.grey ? std::vector<uint8_t>() : facts.profile, 0, false);
    const PhotoStatus status = readEdited(file, changes, bridge, &page);
    closeBridge(&bridge);
    TIFFClose(file);
    if (status != PhotoStatus::Ok) return status;
    const bool done =
        appendTurned(output, page, changes, facts) && finish(output, orientationSwapsSides(changes.edited.orientation));
    return done ? PhotoStatus::Ok : PhotoStatus::CannotWrite;
}
