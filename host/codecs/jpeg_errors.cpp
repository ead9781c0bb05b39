#include "host/codecs/jpeg_errors.h"

#include <jerror.h>

static void jumpOut(j_common_ptr codec)
{
    JpegErrors* errors = (JpegErrors*)codec->err;
    switch (errors->base.msg_code) {
    case JERR_OUT_OF_MEMORY: errors->status = PhotoStatus::TooLarge; break;
    case JERR_FILE_WRITE: errors->status = PhotoStatus::CannotWrite; break;
    default: errors->status = codec->is_decompressor ? PhotoStatus::NotAPhoto : PhotoStatus::CannotEncode;
    }
    longjmp(errors->jump, 1);
}

static void noteMessage(j_common_ptr codec, int level)
{
    JpegErrors* errors = (JpegErrors*)codec->err;
    // Stray bytes between segments harm nothing; some cameras leave them.
    if (level < 0 && errors->base.msg_code != JWRN_EXTRANEOUS_DATA && errors->base.msg_code != JWRN_ADOBE_XFORM &&
        errors->base.msg_code != JWRN_JFIF_MAJOR)
        errors->damaged = true;
}

static void saySilently(j_common_ptr) {}

jpeg_error_mgr* watchJpeg(JpegErrors* errors)
{
    jpeg_std_error(&errors->base);
    errors->base.error_exit = jumpOut;
    errors->base.emit_message = noteMessage;
    errors->base.output_message = saySilently;
    errors->status = PhotoStatus::NotAPhoto;
    errors->damaged = false;
    return &errors->base;
}
