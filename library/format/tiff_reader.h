// Reads selection files (see tiff_layout.h), of either byte order, without trusting a byte of them.
//
// Only the first directory is read; mask and thumbnail are looked for where the layout puts them. Every
// size and offset is checked against the file's length, in 64 bits, before anything is asked for by it,
// and the work is bounded by the file's length, whatever the file says.
#pragma once

#include "image/pixels/bits_view.h"
#include "library/format/tiff_description.h"

// Fill an image that the caller has made: 40 by 30 for the thumbnail, width by height for the others.
// False when the bytes are not all inside the file or cannot be read; the image then holds a part.
bool readThumbnailPixels(const ByteSource& source, const SelectionDescription& description, const BitsView& thumbnail);
bool readSelectionPixels(const ByteSource& source, const SelectionDescription& description, const BitsView& image);
bool readSelectionMaskPixels(const ByteSource& source, const SelectionDescription& description, const BitsView& mask);

// Whether the mask lies inside the file; worth asking before memory for it is asked for.
bool hasMaskBytes(const ByteSource& source, const SelectionDescription& description);
