// Reading WebP files; the first picture of a moving one.
#pragma once

#include "host/codecs/photo_codec.h"

PhotoStatus readWebp(FILE* file, const RowSink& sink, PhotoFacts* facts);
