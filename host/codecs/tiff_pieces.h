// The first page of a TIFF file piece by piece, and which of its pixels are edited.
#pragma once

#include "host/codecs/color_bridge.h"
#include "host/codecs/tiff_page.h"

#include <functional>

// Which pixels differ from what the original shows.
struct Changes {
    UprightTarget edited;
    int width;
    std::vector<bool> changed;
    std::vector<uint8_t> row;
    bool any, colored;  // colored: an edited pixel is not grey
};

// False when the original cannot be read any more, or has other sides.
bool findChanges(const wchar_t* original, const EditedPhoto& photo, const PhotoFacts& facts, Changes* changes);

// A strip or tile of one plane or of all, as it lies in the picture.
struct Piece {
    uint32_t number;
    int left, top, width, height;  // of the picture's pixels in it
    int pitch;                     // pixels a row in the piece
    int sample;                    // the plane, or -1 for all
};

bool pieceChanged(const Piece& piece, const Changes& changes);

// Puts the edited pixels into a decoded piece.
void patchPiece(const TiffLayout& layout, const Piece& piece, const Changes& changes, const ColorBridge& bridge,
                uint8_t* native);

// Calls use for all pieces until it returns false. buffer: room for one decoded piece.
using PieceUser = std::function<bool(const Piece& piece, uint8_t* buffer)>;
bool eachTiffPiece(TIFF* file, const TiffLayout& layout, const PieceUser& use);

// Decodes a piece; the bytes that it has, or less than 0.
tmsize_t readTiffPiece(TIFF* file, const Piece& piece, uint8_t* buffer);
