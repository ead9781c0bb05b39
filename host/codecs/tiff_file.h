// TIFF files, classic and BigTIFF. A photo that comes from one and goes to one is edited inside a copy of the
// file: only strips and tiles with edited pixels are written anew, all else of the file stays.
#pragma once

#include "host/codecs/photo_codec.h"

PhotoStatus readTiff(const wchar_t* path, const RowSink& sink, PhotoFacts* facts);

// output exists and is empty. original: the TIFF file the photo was read from, or null; then `facts` tells what
// goes along.
PhotoStatus writeTiff(const wchar_t* output, const EditedPhoto& photo, const PhotoFacts& facts,
                      const wchar_t* original);
