// How the JPEG library's errors and warnings arrive, and the library's header, which needs others before it.
#pragma once

#include "host/codecs/photo_codec.h"

#include <csetjmp>
// The library's own header needs the two above.
#include <jpeglib.h>

// The library reports by a jump. Functions that call setjmp hold no objects with destructors.
struct JpegErrors {
    jpeg_error_mgr base;
    jmp_buf jump;
    PhotoStatus status;
    bool damaged;  // something of the picture is missing or wrong
};

// Fills it in and gives what the library's object wants.
jpeg_error_mgr* watchJpeg(JpegErrors* errors);
