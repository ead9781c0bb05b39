#include "host/codecs/color_bridge.h"
#include "host/codecs/tiff_file.h"
#include "host/codecs/tiff_new.h"
#include "host/codecs/tiff_open.h"
#include "host/codecs/tiff_pieces.h"
#include "host/codecs/tiff_turn.h"
#include "host/codecs/tiff_wipe.h"

#include <algorithm>
#include <cstring>

static bool editPiece(TIFF* file, const TiffLayout& layout, const Piece& piece, const Changes& changes,
                      const ColorBridge& bridge, uint8_t* buffer)
{
    if (!pieceChanged(piece, changes)) return true;
    const tmsize_t size = readTiffPiece(file, piece, buffer);
    if (size < 0) return false;
    patchPiece(layout, piece, changes, bridge, buffer);
    return (TIFFIsTiled(file) ? TIFFWriteEncodedTile(file, piece.number, buffer, size)
                              : TIFFWriteEncodedStrip(file, piece.number, buffer, size)) == size;
}

static bool editsInPlace(const TiffLayout& layout, const Changes& changes)
{
    return canEditSamples(layout) && !(layout.photometric != PHOTOMETRIC_RGB && changes.colored);
}

static bool editCopy(const wchar_t* output, const PhotoFacts& facts, const Changes& changes)
{
    TIFF* file = openTiff(output, "r+");
    if (!file) return false;
    ColorBridge bridge = openBridge(facts.grey ? std::vector<uint8_t>() : facts.profile, 0, false);
    const TiffLayout layout = tiffLayout(file);
    const PieceUser edit = [&](const Piece& piece, uint8_t* buffer) {
        return editPiece(file, layout, piece, changes, bridge, buffer);
    };
    const bool done = eachTiffPiece(file, layout, edit) && TIFFFlush(file);
    closeBridge(&bridge);
    TIFFClose(file);
    return done;
}

static bool copyWhole(const wchar_t* from, const wchar_t* to)
{
    FILE* source = _wfopen(from, L"rb");
    FILE* target = _wfopen(to, L"wb");
    std::vector<uint8_t> part(1 << 20);
    bool done = source && target;
    for (size_t got = 1; done && got > 0;) {
        got = fread(part.data(), 1, part.size(), source);
        done = fwrite(part.data(), 1, got, target) == got && !ferror(source);
    }
    if (source) fclose(source);
    if (target && fclose(target) != 0) done = false;
    return done;
}

// CannotEncode: it has to become a plain new file.
static PhotoStatus editOriginal(const wchar_t* output, const EditedPhoto& photo, const PhotoFacts& facts,
                                const wchar_t* original)
{
    Changes changes = {};
    const bool much = facts.inPlace && (facts.pages > 1 || facts.deep || facts.alpha);  // not to go without a word
    if (!findChanges(original, photo, facts, &changes)) return much ? PhotoStatus::Missing : PhotoStatus::CannotEncode;
    TIFF* file = openTiff(original, "r");
    const bool upright = facts.orientation == 1;
    const bool inPlace = file && ((!changes.any && upright) || editsInPlace(tiffLayout(file), changes));
    if (file) TIFFClose(file);
    if (!inPlace) return PhotoStatus::CannotEncode;
    if (!copyWhole(original, output)) return PhotoStatus::CannotWrite;
    const PhotoStatus status = !upright ? turnTiffPage(output, original, facts, changes)
                               : !changes.any || editCopy(output, facts, changes) ? PhotoStatus::Ok
                                                                                  : PhotoStatus::CannotWrite;
    if (status != PhotoStatus::Ok || (upright && !changes.any)) return status;
    return wipeUnused(output, original) ? PhotoStatus::Ok : PhotoStatus::CannotWrite;
}

PhotoStatus writeTiff(const wchar_t* output, const EditedPhoto& photo, const PhotoFacts& facts, const wchar_t* original)
{
    const PhotoStatus status = original ? editOriginal(output, photo, facts, original) : PhotoStatus::CannotEncode;
    if (status != PhotoStatus::CannotEncode) return status;
    return writeNewTiff(output, photo, facts, original) ? PhotoStatus::Ok : PhotoStatus::CannotWrite;
}
