// What a bitmap file tells beside its pixels, which the system decodes.
#pragma once

#include "host/codecs/photo_codec.h"

// The file is at its start, and is there again afterwards. Facts of other files stay as they are.
void collectBitmapFacts(FILE* file, PhotoFacts* facts);
