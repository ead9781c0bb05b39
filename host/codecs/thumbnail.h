// The small preview picture that cameras put into their data.
#pragma once

#include "host/codecs/photo_codec.h"

// Brings a block of camera data up to date: upright, the picture's size, and a preview of the edited picture
// where there was one.
void refreshExif(uint8_t* exif, size_t size, const EditedPhoto& photo);
