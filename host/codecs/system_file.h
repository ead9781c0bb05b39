// Reading what the system's imaging component knows: BMP, GIF and whatever else is installed.
#pragma once

#include "host/codecs/photo_codec.h"

// Once per thread before, and after, reading. False when the component cannot be had.
bool startImaging();
void stopImaging();

PhotoStatus readBySystem(const wchar_t* path, const RowSink& sink, PhotoFacts* facts);
