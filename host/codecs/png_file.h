// PNG files. A photo that comes from one and goes to one keeps its kind of pixels, the depth and the alpha of
// every pixel that was not edited, its table of colours where that still does, and all its chunks.
#pragma once

#include "host/codecs/photo_codec.h"

PhotoStatus readPng(FILE* file, const RowSink& sink, PhotoFacts* facts);

// original: the PNG file the photo was read from, or null; then `facts` tells what goes along.
PhotoStatus writePng(FILE* output, const EditedPhoto& photo, const PhotoFacts& facts, FILE* original);
