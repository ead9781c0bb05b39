#include "host/codecs/tiff_pieces.h"

#include "host/codecs/tiff_open.h"

#include <algorithm>
#include <cstring>

static PhotoStatus noBegin(void*, const PhotoShape&)
{
    return PhotoStatus::Ok;
}

static bool compareRows(void* context, const uint8_t* bgra, ptrdiff_t stride, int firstRow, int rowCount)
{
    Changes* changes = (Changes*)context;
    for (int row = 0; row < rowCount; ++row) {
        gatherRows(changes->edited, firstRow + row, 1, changes->row.data(), 0);
        const uint8_t* shown = bgra + row * stride;
        for (int x = 0; x < changes->width; ++x) {
            const uint8_t* edited = &changes->row[(size_t)x * 3];
            if (memcmp(shown + (size_t)x * 4, edited, 3) == 0) continue;
            changes->changed[(size_t)(firstRow + row) * changes->width + x] = true;
            changes->any = true;
            changes->colored = changes->colored || edited[0] != edited[1] || edited[0] != edited[2];
        }
    }
    return true;
}

bool findChanges(const wchar_t* original, const EditedPhoto& photo, const PhotoFacts& facts, Changes* changes)
{
    TIFF* file = openTiff(original, "r");
    if (!file) return false;
    const TiffLayout layout = tiffLayout(file);
    changes->edited = editedInFile(photo, facts.orientation);
    changes->width = (int)layout.width;
    bool done = changes->edited.fileWidth == (int)layout.width && changes->edited.fileHeight == (int)layout.height;
    if (done) {
        changes->changed.assign((size_t)layout.width * layout.height, false);
        changes->row.resize((size_t)layout.width * 3);
        done = eachTiffBand(file, facts, {changes, noBegin, compareRows}) == PhotoStatus::Ok;
    }
    TIFFClose(file);
    return done;
}

static int sampleAt(const TiffLayout& layout, const uint8_t* at)
{
    if (layout.bits == 8) return *at;
    uint16_t value;
    memcpy(&value, at, 2);
    return (value + 128) / 257;
}

static void setSampleAt(const TiffLayout& layout, uint8_t* at, int value)
{
    if (layout.bits == 8) {
        *at = (uint8_t)value;
    } else {
        const uint16_t deep = (uint16_t)(value * 257);
        memcpy(at, &deep, 2);
    }
}

// What a sample becomes so that it is seen as `shown`.
static int storedValue(const TiffLayout& layout, int shown, int alpha)
{
    int value = shown;
    if (layout.alphaKind == EXTRASAMPLE_UNASSALPHA) value = fromOverWhite(shown, alpha);
    if (layout.alphaKind == EXTRASAMPLE_ASSOCALPHA) value = std::max(shown - (255 - alpha), 0);
    return layout.photometric == PHOTOMETRIC_MINISWHITE ? 255 - value : value;
}

void patchPiece(const TiffLayout& layout, const Piece& piece, const Changes& changes, const ColorBridge& bridge,
                uint8_t* native)
{
    const int colors = layout.photometric == PHOTOMETRIC_RGB ? 3 : 1;
    const int bytes = layout.bits / 8, inPiece = piece.sample < 0 ? layout.samples : 1;
    std::vector<uint8_t> row((size_t)changes.width * 3);
    for (int y = 0; y < piece.height; ++y) {
        gatherRows(changes.edited, piece.top + y, 1, row.data(), 0);
        storeColors(bridge, row.data(), changes.width);
        for (int x = 0; x < piece.width; ++x) {
            const size_t column = (size_t)piece.left + x;
            if (!changes.changed[(size_t)(piece.top + y) * changes.width + column]) continue;
            uint8_t* pixel = native + ((size_t)y * piece.pitch + x) * inPiece * bytes;
            const int alpha = layout.alpha && piece.sample < 0 ? sampleAt(layout, pixel + colors * bytes) : 255;
            for (int sample = 0; sample < colors; ++sample) {
                if (piece.sample >= 0 && piece.sample != sample) continue;
                const int shown = row[column * 3 + (colors == 3 ? 2 - sample : 0)];
                setSampleAt(layout, pixel + (piece.sample < 0 ? sample * bytes : 0), storedValue(layout, shown, alpha));
            }
        }
    }
}

bool pieceChanged(const Piece& piece, const Changes& changes)
{
    for (int y = piece.top; y < piece.top + piece.height; ++y)
        for (int x = piece.left; x < piece.left + piece.width; ++x)
            if (changes.changed[(size_t)y * changes.width + x]) return true;
    return false;
}

tmsize_t readTiffPiece(TIFF* file, const Piece& piece, uint8_t* buffer)
{
    return TIFFIsTiled(file) ? TIFFReadEncodedTile(file, piece.number, buffer, (tmsize_t)-1)
                             : TIFFReadEncodedStrip(file, piece.number, buffer, (tmsize_t)-1);
}

bool eachTiffPiece(TIFF* file, const TiffLayout& layout, const PieceUser& use)
{
    const bool tiled = TIFFIsTiled(file);
    uint32_t wide = layout.width, high = layout.height;
    if (tiled) {
        TIFFGetField(file, TIFFTAG_TILEWIDTH, &wide);
        TIFFGetField(file, TIFFTAG_TILELENGTH, &high);
    } else {
        TIFFGetFieldDefaulted(file, TIFFTAG_ROWSPERSTRIP, &high);
        high = std::min(high, layout.height);
    }
    const tmsize_t size = tiled ? TIFFTileSize(file) : TIFFStripSize(file);
    const LargeBytes buffer = allocateLarge(size > 0 ? (uint64_t)size : 0);
    if (size <= 0 || !buffer) return false;
    const int planes = layout.planar == PLANARCONFIG_SEPARATE ? layout.samples : 1;
    uint32_t number = 0;
    for (int plane = 0; plane < planes; ++plane)
        for (uint32_t top = 0; top < layout.height; top += high)
            for (uint32_t left = 0; left < layout.width; left += wide) {
                const Piece piece = {number++,
                                     (int)left,
                                     (int)top,
                                     (int)std::min(wide, layout.width - left),
                                     (int)std::min(high, layout.height - top),
                                     (int)wide,
                                     planes > 1 ? plane : -1};
                if (!use(piece, buffer.get())) return false;
            }
    return true;
}
