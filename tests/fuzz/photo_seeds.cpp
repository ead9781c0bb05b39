// Sound photos of every kind that the readers tell apart, made by the formats' own libraries.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <jpeglib.h>
#include <lcms2.h>
#include <png.h>
#include <webp/encode.h>
#include <webp/mux.h>

#include "tests/fuzz/photo_memory.h"

constexpr int WIDTH = 19, HEIGHT = 13;

static Bytes samplesOf(int channels)
{
    Bytes samples((size_t)WIDTH * HEIGHT * (size_t)channels);
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = (uint8_t)(i * 37 + i / 11);
    return samples;
}

static Bytes profileBytes()
{
    const cmsHPROFILE profile = cmsCreate_sRGBProfile();
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    Bytes bytes(size);
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

// Orientation 6, nothing else.
static Bytes cameraData()
{
    return {'I', 'I', 42, 0, 8, 0, 0, 0, 1, 0, 0x12, 1, 3, 0, 1, 0, 0, 0, 6, 0, 0, 0, 0, 0, 0, 0};
}

static Bytes jpegSeed(int channels, bool progressive, bool profile)
{
    jpeg_compress_struct output;
    jpeg_error_mgr errors;
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    output.err = jpeg_std_error(&errors);
    jpeg_create_compress(&output);
    jpeg_mem_dest(&output, &bytes, &size);
    output.image_width = WIDTH;
    output.image_height = HEIGHT;
    output.input_components = channels;
    output.in_color_space = channels == 1 ? JCS_GRAYSCALE : channels == 3 ? JCS_RGB : JCS_CMYK;
    jpeg_set_defaults(&output);
    if (progressive) jpeg_simple_progression(&output);
    output.restart_interval = progressive ? 0 : 2;
    jpeg_start_compress(&output, TRUE);
    Bytes exif = {'E', 'x', 'i', 'f', 0, 0};
    for (const uint8_t byte : cameraData())
        exif.push_back(byte);
    jpeg_write_marker(&output, JPEG_APP0 + 1, exif.data(), (unsigned)exif.size());
    jpeg_write_marker(&output, JPEG_COM, (const JOCTET*)"word", 4);
    if (profile) {
        const Bytes icc = profileBytes();
        jpeg_write_icc_profile(&output, icc.data(), (unsigned)icc.size());
    }
    Bytes samples = samplesOf(channels);
    while (output.next_scanline < output.image_height) {
        JSAMPROW row = samples.data() + (size_t)output.next_scanline * WIDTH * (size_t)channels;
        jpeg_write_scanlines(&output, &row, 1);
    }
    jpeg_finish_compress(&output);
    jpeg_destroy_compress(&output);
    const Bytes made(bytes, bytes + size);
    free(bytes);
    return made;
}

static void takePng(png_structp png, png_bytep bytes, size_t size)
{
    Bytes* const made = (Bytes*)png_get_io_ptr(png);
    made->insert(made->end(), bytes, bytes + size);
}

static Bytes pngSeed(int type, int depth, bool interlaced, bool profile)
{
    Bytes made;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &made, takePng, nullptr);
    png_set_IHDR(png, info, WIDTH, HEIGHT, depth, type, interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_color colors[4] = {{0, 0, 0}, {255, 0, 0}, {0, 255, 9}, {255, 255, 255}};
    png_byte alpha[2] = {0, 128};
    png_color_16 key = {0, 1, 2, 3, 4};
    if (type == PNG_COLOR_TYPE_PALETTE) png_set_PLTE(png, info, colors, 4);
    if (type == PNG_COLOR_TYPE_PALETTE) png_set_tRNS(png, info, alpha, 2, nullptr);
    if (type == PNG_COLOR_TYPE_RGB || type == PNG_COLOR_TYPE_GRAY) png_set_tRNS(png, info, nullptr, 0, &key);
    Bytes exif = cameraData();
    png_set_eXIf_1(png, info, (png_uint_32)exif.size(), exif.data());
    png_set_pHYs(png, info, 3000, 3000, PNG_RESOLUTION_METER);
    const Bytes icc = profile ? profileBytes() : Bytes();
    if (profile) png_set_iCCP(png, info, "own", 0, icc.data(), (png_uint_32)icc.size());
    png_write_info(png, info);
    Bytes samples = samplesOf(8);  // as many as the widest rows need
    if (type == PNG_COLOR_TYPE_PALETTE)
        for (uint8_t& sample : samples)
            sample = depth == 8 ? sample & 3 : sample;
    Bytes copy = samples;
    png_bytep rows[HEIGHT];
    for (int row = 0; row < HEIGHT; ++row)
        rows[row] = copy.data() + row * WIDTH * 8;
    png_write_image(png, rows);
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return made;
}

struct TiffKind {
    uint16_t photometric, samples, bits, compression, planar;
    bool tiled, big, profile;
};

static Bytes tiffSeed(const TiffKind& kind)
{
    PhotoMemory memory = {{}, 0};
    TIFF* const file = openTiffInMemory(&memory, kind.big ? "w8" : "wb");
    TIFFSetField(file, TIFFTAG_IMAGEWIDTH, (uint32_t)WIDTH);
    TIFFSetField(file, TIFFTAG_IMAGELENGTH, (uint32_t)HEIGHT);
    TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, kind.bits);
    TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, kind.samples);
    TIFFSetField(file, TIFFTAG_PHOTOMETRIC, kind.photometric);
    TIFFSetField(file, TIFFTAG_COMPRESSION, kind.compression);
    TIFFSetField(file, TIFFTAG_PLANARCONFIG, kind.planar);
    TIFFSetField(file, TIFFTAG_ORIENTATION, (uint16_t)5);
    TIFFSetField(file, TIFFTAG_XRESOLUTION, 300.0);
    if (kind.photometric == PHOTOMETRIC_RGB && kind.samples == 4) {
        const uint16_t extra[1] = {EXTRASAMPLE_UNASSALPHA};
        TIFFSetField(file, TIFFTAG_EXTRASAMPLES, (uint16_t)1, extra);
    }
    uint16_t map[256] = {1, 2, 3};
    if (kind.photometric == PHOTOMETRIC_PALETTE) TIFFSetField(file, TIFFTAG_COLORMAP, map, map, map);
    const Bytes icc = profileBytes();
    if (kind.profile) TIFFSetField(file, TIFFTAG_ICCPROFILE, (uint32_t)icc.size(), icc.data());
    Bytes samples(64 * 1024);
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = (uint8_t)(i * 29);
    const uint16_t planes = kind.planar == PLANARCONFIG_SEPARATE ? kind.samples : 1;
    if (kind.tiled) {
        TIFFSetField(file, TIFFTAG_TILEWIDTH, (uint32_t)16);
        TIFFSetField(file, TIFFTAG_TILELENGTH, (uint32_t)16);
        for (uint32_t tile = 0; tile < TIFFNumberOfTiles(file); ++tile)
            TIFFWriteEncodedTile(file, tile, samples.data(), TIFFTileSize(file));
    } else {
        const bool jpeg = kind.compression == COMPRESSION_JPEG;
        if (jpeg) TIFFSetField(file, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, (uint32_t)(jpeg ? 16 : 5));  // whole blocks
        for (uint16_t plane = 0; plane < planes; ++plane)
            for (uint32_t row = 0; row < (uint32_t)HEIGHT; ++row)
                TIFFWriteScanline(file, samples.data() + row, row, plane);
    }
    TIFFWriteDirectory(file);
    TIFFClose(file);
    return memory.bytes;
}

static Bytes webpSeed(bool lossless, bool wrapped)
{
    const Bytes samples = samplesOf(4);
    uint8_t* bytes = nullptr;
    const size_t size = lossless ? WebPEncodeLosslessBGRA(samples.data(), WIDTH, HEIGHT, WIDTH * 4, &bytes)
                                 : WebPEncodeBGRA(samples.data(), WIDTH, HEIGHT, WIDTH * 4, 70, &bytes);
    Bytes made(bytes, bytes + size);
    WebPFree(bytes);
    if (!wrapped) return made;
    WebPMux* const mux = WebPMuxNew();
    const WebPData picture = {made.data(), made.size()};
    const Bytes icc = profileBytes(), exif = cameraData();
    const WebPData profile = {icc.data(), icc.size()}, camera = {exif.data(), exif.size()};
    WebPMuxFrameInfo frame = {};
    frame.bitstream = picture;
    frame.x_offset = 4;
    frame.duration = 100;
    frame.id = WEBP_CHUNK_ANMF;
    for (int i = 0; i < 2; ++i)
        WebPMuxPushFrame(mux, &frame, 1);
    const WebPMuxAnimParams moving = {0, 0};
    WebPMuxSetAnimationParams(mux, &moving);
    WebPMuxSetChunk(mux, "ICCP", &profile, 1);
    WebPMuxSetChunk(mux, "EXIF", &camera, 1);
    WebPData whole = {nullptr, 0};
    WebPMuxAssemble(mux, &whole);
    made.assign(whole.bytes, whole.bytes + whole.size);
    WebPDataClear(&whole);
    WebPMuxDelete(mux);
    return made;
}

std::vector<Bytes> jpegPhotos()
{
    return {jpegSeed(1, false, false), jpegSeed(3, false, true), jpegSeed(3, true, false), jpegSeed(4, false, false),
            jpegSeed(4, true, true)};
}

std::vector<Bytes> pngPhotos()
{
    return {pngSeed(PNG_COLOR_TYPE_GRAY, 1, false, false),      pngSeed(PNG_COLOR_TYPE_GRAY, 16, true, false),
            pngSeed(PNG_COLOR_TYPE_PALETTE, 2, false, false),   pngSeed(PNG_COLOR_TYPE_PALETTE, 8, true, false),
            pngSeed(PNG_COLOR_TYPE_RGB, 8, false, true),        pngSeed(PNG_COLOR_TYPE_RGB, 16, true, false),
            pngSeed(PNG_COLOR_TYPE_RGB_ALPHA, 8, false, false), pngSeed(PNG_COLOR_TYPE_GRAY_ALPHA, 16, false, false)};
}

std::vector<Bytes> tiffPhotos()
{
    static const TiffKind kinds[] = {
        {PHOTOMETRIC_RGB, 3, 8, COMPRESSION_NONE, PLANARCONFIG_CONTIG, false, false, true},
        {PHOTOMETRIC_RGB, 4, 16, COMPRESSION_LZW, PLANARCONFIG_SEPARATE, false, true, false},
        {PHOTOMETRIC_RGB, 3, 8, COMPRESSION_ADOBE_DEFLATE, PLANARCONFIG_CONTIG, true, false, false},
        {PHOTOMETRIC_PALETTE, 1, 8, COMPRESSION_PACKBITS, PLANARCONFIG_CONTIG, false, false, false},
        {PHOTOMETRIC_MINISWHITE, 1, 1, COMPRESSION_CCITTFAX4, PLANARCONFIG_CONTIG, false, false, false},
        {PHOTOMETRIC_SEPARATED, 4, 8, COMPRESSION_NONE, PLANARCONFIG_CONTIG, true, false, false},
        {PHOTOMETRIC_YCBCR, 3, 8, COMPRESSION_JPEG, PLANARCONFIG_CONTIG, false, false, false},
    };
    std::vector<Bytes> seeds;
    for (const TiffKind& kind : kinds)
        seeds.push_back(tiffSeed(kind));
    return seeds;
}

std::vector<Bytes> webpPhotos()
{
    return {webpSeed(false, false), webpSeed(true, false), webpSeed(true, true)};
}

// headSize: of the part behind the file's own head; with masks and a profile where it has room for them.
static Bytes bitmapSeed(uint8_t headSize, uint8_t bits)
{
    const Bytes profile = headSize == 124 ? profileBytes() : Bytes();
    const size_t pixels = (WIDTH * (size_t)bits / 8 + 3) / 4 * 4 * HEIGHT;
    Bytes file(14 + (size_t)headSize + pixels);
    const auto put = [&](size_t at, uint32_t value) {
        for (size_t i = 0; i < 4; ++i)
            file[at + i] = (uint8_t)(value >> 8 * i);
    };
    memcpy(file.data(), "BM", 2);
    put(10, 14u + headSize);
    put(14, headSize);
    put(18, WIDTH);
    put(22, headSize == 40 ? HEIGHT : (uint32_t)-HEIGHT);
    put(26, 1u | (uint32_t)bits << 16);
    if (headSize >= 108) {
        put(30, 3);
        for (size_t i = 0; i < 4; ++i)
            put(54 + 4 * i, i == 3 ? 0xFF000000u : 0xFF0000u >> 8 * i);
    }
    if (headSize == 124) {
        put(70, 0x4D424544);
        put(126, (uint32_t)(headSize + pixels));
        put(130, (uint32_t)profile.size());
    }
    file.insert(file.end(), profile.begin(), profile.end());
    return file;
}

std::vector<Bytes> bitmapPhotos()
{
    return {bitmapSeed(40, 24), bitmapSeed(40, 32), bitmapSeed(108, 32), bitmapSeed(124, 32)};
}
