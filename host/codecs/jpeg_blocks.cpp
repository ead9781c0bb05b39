#include "host/codecs/jpeg_blocks.h"

#include "host/codecs/jpeg_rows.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

// A strip is one row of MCUs: as many pixel rows as the coarsest component's block covers.
struct Strip {
    int width, rows;
    int first;                    // its uppermost pixel row
    std::vector<uint8_t> shown;   // BGRA as the file shows it
    std::vector<uint8_t> edited;  // BGR
    std::vector<uint8_t> line;    // one row for the encoder
    std::vector<bool> changed;    // pixels, row by row
    JpegRows original;
    jpeg_compress_struct output;
    jpeg_decompress_struct anew;
    unsigned char* bytes;
    unsigned long size;
    JpegErrors errors;
    bool hasOriginal, hasOutput, hasAnew;
};

static bool markChanges(Strip* strip)
{
    bool any = false;
    for (size_t i = 0; i < (size_t)strip->width * strip->rows; ++i) {
        strip->changed[i] = memcmp(&strip->shown[i * 4], &strip->edited[i * 3], 3) != 0;
        any = any || strip->changed[i];
    }
    return any;
}

static bool isGrey(const Strip& strip)
{
    for (size_t i = 0; i < (size_t)strip.width * strip.rows * 3; i += 3)
        if (strip.edited[i] != strip.edited[i + 1] || strip.edited[i] != strip.edited[i + 2]) return false;
    return true;
}

static void fillLine(Strip* strip, int row, int components, const ColorBridge& bridge)
{
    const uint8_t* from = &strip->edited[(size_t)row * strip->width * 3];
    uint8_t* to = strip->line.data();
    if (components == 4) {
        storeInks(bridge, from, strip->original.inverted, to, strip->width);
    } else if (components == 3) {
        memcpy(to, from, (size_t)strip->width * 3);
        storeColors(bridge, to, strip->width);
    } else {
        for (int x = 0; x < strip->width; ++x)
            to[x] = from[x * 3];
    }
}

// Encodes the edited strip with the original's tables and subsampling, into memory.
static void encodeStrip(Strip* strip, jpeg_decompress_struct* input, const ColorBridge& bridge)
{
    jpeg_compress_struct& output = strip->output;
    free(strip->bytes);
    strip->bytes = nullptr;
    strip->size = 0;
    jpeg_mem_dest(&output, &strip->bytes, &strip->size);
    jpeg_copy_critical_parameters(input, &output);
    output.image_width = (JDIMENSION)strip->width;
    output.image_height = (JDIMENSION)strip->rows;
    output.input_components = input->num_components;
    output.in_color_space = input->num_components == 4   ? JCS_CMYK
                            : input->num_components == 3 ? JCS_EXT_BGR
                                                         : JCS_GRAYSCALE;
    output.write_Adobe_marker = FALSE;
    jpeg_start_compress(&output, TRUE);
    for (int row = 0; row < strip->rows; ++row) {
        fillLine(strip, row, input->num_components, bridge);
        JSAMPROW line = strip->line.data();
        jpeg_write_scanlines(&output, &line, 1);
    }
    jpeg_finish_compress(&output);
}

// Whether a pixel of the strip that a block stands for was changed. Counted in blocks from the strip's corner.
static bool blockChanged(const Strip& strip, const jpeg_decompress_struct& input, const jpeg_component_info& part,
                         int across, int down)
{
    const int wide = 8 * input.max_h_samp_factor, high = 8 * input.max_v_samp_factor;
    const int left = across * wide / part.h_samp_factor;
    const int right = std::min(((across + 1) * wide + part.h_samp_factor - 1) / part.h_samp_factor, strip.width);
    const int top = down * high / part.v_samp_factor;
    const int bottom = std::min(((down + 1) * high + part.v_samp_factor - 1) / part.v_samp_factor, strip.rows);
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            if (strip.changed[(size_t)y * strip.width + x]) return true;
    return false;
}

static void takeBlocks(Strip* strip, jpeg_decompress_struct* input, jvirt_barray_ptr* blocks, int stripNumber)
{
    jpeg_decompress_struct& anew = strip->anew;
    jpeg_mem_src(&anew, strip->bytes, strip->size);
    jpeg_read_header(&anew, TRUE);
    jvirt_barray_ptr* fresh = jpeg_read_coefficients(&anew);
    for (int i = 0; i < input->num_components; ++i) {
        const jpeg_component_info& part = input->comp_info[i];
        const JDIMENSION first = (JDIMENSION)(stripNumber * part.v_samp_factor);
        const int rows = std::min(part.v_samp_factor, (int)part.height_in_blocks - (int)first);
        for (int row = 0; row < rows && row < (int)anew.comp_info[i].height_in_blocks; ++row) {
            JBLOCKARRAY to = input->mem->access_virt_barray((j_common_ptr)input, blocks[i], first + row, 1, TRUE);
            JBLOCKARRAY from = anew.mem->access_virt_barray((j_common_ptr)&anew, fresh[i], (JDIMENSION)row, 1, FALSE);
            for (int column = 0; column < (int)part.width_in_blocks; ++column)
                if (blockChanged(*strip, *input, part, column, row))
                    memcpy(to[0][column], from[0][column], sizeof(JBLOCK));
        }
    }
    jpeg_finish_decompress(&anew);
}

static void openStrip(Strip* strip, jpeg_decompress_struct* input, FILE* again, const BlockEdit& edit)
{
    JpegRows& original = strip->original;
    original.input.err = strip->output.err = strip->anew.err = input->err;
    original.bridge = edit.bridge;
    jpeg_create_decompress(&original.input);
    strip->hasOriginal = true;
    jpeg_create_compress(&strip->output);
    strip->hasOutput = true;
    jpeg_create_decompress(&strip->anew);
    strip->hasAnew = true;
    jpeg_stdio_src(&original.input, again);
    jpeg_read_header(&original.input, TRUE);
    startJpegRows(&original);
}

static bool updateStrips(Strip* strip, jpeg_decompress_struct* input, jvirt_barray_ptr* blocks, FILE* again,
                         const EditedPhoto& photo, const BlockEdit& edit)
{
    openStrip(strip, input, again, edit);
    const UprightTarget edited = editedInFile(photo, edit.orientation);
    strip->width = (int)input->image_width;
    const int height = (int)input->image_height;
    if (edited.fileWidth != strip->width || edited.fileHeight != height) return false;
    const int high = 8 * input->max_v_samp_factor;
    strip->shown.resize((size_t)strip->width * high * 4);
    strip->edited.resize((size_t)strip->width * high * 3);
    strip->changed.resize((size_t)strip->width * high);
    strip->line.resize((size_t)strip->width * 4);
    for (strip->first = 0; strip->first < height; strip->first += high) {
        strip->rows = std::min(high, height - strip->first);
        readJpegRows(&strip->original, strip->shown.data(), (size_t)strip->width * 4, strip->rows);
        gatherRows(edited, strip->first, strip->rows, strip->edited.data(), (ptrdiff_t)strip->width * 3);
        if (!markChanges(strip)) continue;
        if (input->num_components == 1 && !isGrey(*strip)) return false;
        encodeStrip(strip, input, edit.bridge);
        takeBlocks(strip, input, blocks, strip->first / high);
    }
    return true;
}

static void closeStrip(Strip* strip)
{
    if (strip->hasOriginal) jpeg_destroy_decompress(&strip->original.input);
    if (strip->hasOutput) jpeg_destroy_compress(&strip->output);
    if (strip->hasAnew) jpeg_destroy_decompress(&strip->anew);
    free(strip->bytes);
}

bool updateBlocks(jpeg_decompress_struct* input, jvirt_barray_ptr* blocks, FILE* again, const EditedPhoto& photo,
                  BlockEdit* edit)
{
    Strip strip = {};
    // A jump goes on to the caller, but not past what is held here.
    JpegErrors* errors = (JpegErrors*)input->err;
    jmp_buf outer;
    memcpy(&outer, &errors->jump, sizeof outer);
    const int jumped = setjmp(errors->jump);
    const bool done = jumped ? false : updateStrips(&strip, input, blocks, again, photo, *edit);
    closeStrip(&strip);
    memcpy(&errors->jump, &outer, sizeof outer);
    if (jumped) longjmp(errors->jump, 1);
    return done;
}
