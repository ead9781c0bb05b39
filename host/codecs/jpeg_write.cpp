#include "host/codecs/jpeg_blocks.h"
#include "host/codecs/jpeg_file.h"
#include "host/codecs/jpeg_rows.h"
#include "host/codecs/jpeg_segments.h"

#include <cstring>

extern "C" {
#include <transupp.h>
}

constexpr int NEW_QUALITY = 95;

static const JXFORM_CODE turns[] = {JXFORM_NONE,      JXFORM_FLIP_H, JXFORM_ROT_180,    JXFORM_FLIP_V,
                                    JXFORM_TRANSPOSE, JXFORM_ROT_90, JXFORM_TRANSVERSE, JXFORM_ROT_270};

// Everything that a jump may leave behind, so that it is let go in one place.
struct JpegWriting {
    jpeg_decompress_struct input;  // the original's blocks
    jpeg_compress_struct output;
    bool hasInput, hasOutput;
    JpegErrors errors;
    BlockEdit edit;
    jpeg_transform_info turn;
    jvirt_barray_ptr* blocks;
    std::vector<uint8_t> row;
};

static void setDensity(jpeg_compress_struct* output, const EditedPhoto& photo)
{
    if (photo.across <= 0 || photo.down <= 0) return;
    output->density_unit = 1;
    output->X_density = (UINT16)(photo.across * 0.0254 + 0.5);
    output->Y_density = (UINT16)(photo.down * 0.0254 + 0.5);
}

static void transposeTables(jpeg_compress_struct* output)
{
    for (JQUANT_TBL* table : output->quant_tbl_ptrs) {
        if (!table) continue;
        for (int row = 0; row < 8; ++row)
            for (int column = 0; column < row; ++column)
                std::swap(table->quantval[row * 8 + column], table->quantval[column * 8 + row]);
    }
    for (int i = 0; i < output->num_components; ++i)
        std::swap(output->comp_info[i].h_samp_factor, output->comp_info[i].v_samp_factor);
}

// The original's tables and subsampling for a picture that is encoded anew.
static void takeSettings(const JpegWriting& writing, jpeg_compress_struct* output)
{
    jpeg_decompress_struct& input = const_cast<jpeg_decompress_struct&>(writing.input);
    if (input.num_components != 3 || input.jpeg_color_space != JCS_YCbCr) {
        jpeg_set_quality(output, NEW_QUALITY, TRUE);
        // A grey photo that has become a coloured one: as fine as it was.
        if (input.num_components == 1 && input.quant_tbl_ptrs[0])
            for (int i = 0; i < 2; ++i)
                if (output->quant_tbl_ptrs[i])
                    memcpy(output->quant_tbl_ptrs[i]->quantval, input.quant_tbl_ptrs[0]->quantval,
                           sizeof input.quant_tbl_ptrs[0]->quantval);
        return;
    }
    const JDIMENSION width = output->image_width, height = output->image_height;
    jpeg_copy_critical_parameters(&input, output);
    output->image_width = width;
    output->image_height = height;
    output->input_components = 3;
    output->in_color_space = JCS_EXT_BGR;
    if (orientationSwapsSides(writing.edit.orientation)) transposeTables(output);
}

// Every pixel anew, upright.
// All but the rows. Has the colours' way into the file opened where they need one.
static void startEncoding(JpegWriting* writing, const EditedPhoto& photo, const PhotoFacts& facts, bool keepsColors)
{
    jpeg_compress_struct& output = writing->output;
    output.image_width = (JDIMENSION)photo.width;
    output.image_height = (JDIMENSION)photo.height;
    output.input_components = 3;
    output.in_color_space = JCS_EXT_BGR;
    jpeg_set_defaults(&output);
    if (writing->hasInput) {
        takeSettings(*writing, &output);
    } else {
        if (keepsColors) writing->edit.bridge = openBridge(facts.profile, 0, false);
        jpeg_set_quality(&output, NEW_QUALITY, TRUE);
        output.comp_info[0].h_samp_factor = output.comp_info[0].v_samp_factor = 1;
    }
    output.optimize_coding = TRUE;
    if (writing->hasInput && writing->input.progressive_mode) jpeg_simple_progression(&output);
    setDensity(&output, photo);
    jpeg_start_compress(&output, TRUE);
    if (writing->hasInput)
        copyJpegSegments(writing->input, &output, photo);
    else
        writeJpegFacts(&output, facts, photo);
}

static void encodeAll(JpegWriting* writing, const EditedPhoto& photo, const PhotoFacts& facts)
{
    const bool keepsColors = !facts.grey && !facts.inks;
    startEncoding(writing, photo, facts, keepsColors);
    jpeg_compress_struct& output = writing->output;
    const UprightTarget upright = editedInFile(photo, 1);
    writing->row.resize((size_t)photo.width * 3);
    while (output.next_scanline < output.image_height) {
        JSAMPROW row = writing->row.data();
        gatherRows(upright, (int)output.next_scanline, 1, row, 0);
        if (keepsColors) storeColors(writing->edit.bridge, row, photo.width);
        jpeg_write_scanlines(&output, &row, 1);
    }
    jpeg_finish_compress(&output);
}

static void keepBlocks(JpegWriting* writing, const EditedPhoto& photo)
{
    jpeg_transform_info* turn = &writing->turn;
    jpeg_compress_struct& output = writing->output;
    jpeg_copy_critical_parameters(&writing->input, &output);
    jvirt_barray_ptr* blocks = jtransform_adjust_parameters(&writing->input, &output, writing->blocks, turn);
    output.arith_code = writing->input.arith_code;
    output.optimize_coding = !output.arith_code;
    output.restart_interval = writing->input.restart_interval;
    if (writing->input.progressive_mode) jpeg_simple_progression(&output);
    jpeg_write_coefficients(&output, blocks);
    copyJpegSegments(writing->input, &output, photo);
    jtransform_execute_transform(&writing->input, &output, writing->blocks, turn);
    jpeg_finish_compress(&output);
}

// Opens the original and brings its blocks up to date; false when they cannot be kept.
static bool editBlocks(JpegWriting* writing, const EditedPhoto& photo, const PhotoFacts& facts, FILE* original,
                       FILE* again)
{
    jpeg_decompress_struct& input = writing->input;
    jpeg_create_decompress(&input);
    writing->hasInput = true;
    jpeg_stdio_src(&input, original);
    saveJpegSegments(&input);
    jpeg_read_header(&input, TRUE);
    writing->edit.orientation = facts.orientation;
    writing->edit.bridge = openBridge(facts.profile, facts.inks ? 4 : 0, jpegInksAreInverted(input));
    writing->turn.transform = turns[facts.orientation - 1];
    writing->turn.perfect = TRUE;
    if (!jtransform_request_workspace(&input, &writing->turn)) return false;
    writing->blocks = jpeg_read_coefficients(&input);
    return updateBlocks(&input, writing->blocks, again, photo, &writing->edit);
}

static PhotoStatus write(JpegWriting* writing, FILE* file, const EditedPhoto& photo, const PhotoFacts& facts,
                         FILE* original, FILE* again)
{
    if (setjmp(writing->errors.jump)) return writing->errors.status;
    const bool kept = original && editBlocks(writing, photo, facts, original, again);
    if (original && writing->errors.damaged) return PhotoStatus::NotAPhoto;  // not the file that was read
    jpeg_create_compress(&writing->output);
    writing->hasOutput = true;
    jpeg_stdio_dest(&writing->output, file);
    if (kept)
        keepBlocks(writing, photo);
    else
        encodeAll(writing, photo, facts);
    return PhotoStatus::Ok;
}

PhotoStatus writeJpeg(FILE* output, const EditedPhoto& photo, const PhotoFacts& facts, FILE* original, FILE* again)
{
    JpegWriting writing = {};
    writing.input.err = writing.output.err = watchJpeg(&writing.errors);
    const PhotoStatus status = write(&writing, output, photo, facts, original, again);
    if (writing.hasOutput) jpeg_destroy_compress(&writing.output);
    if (writing.hasInput) jpeg_destroy_decompress(&writing.input);
    closeBridge(&writing.edit.bridge);
    return status;
}
