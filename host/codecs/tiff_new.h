// Writing a TIFF file of plain colours, upright, where the original's own pixels cannot be changed in place.
#pragma once

#include "host/codecs/photo_codec.h"

// A new file of one page, with the words and the compression of the original where there is one.
bool writeNewTiff(const wchar_t* output, const EditedPhoto& photo, const PhotoFacts& facts, const wchar_t* original);
