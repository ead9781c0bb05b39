#include "host/codecs/webp_file.h"

#include "host/codecs/color_bridge.h"
#include "host/photo/exif_edit.h"

#include <algorithm>
#include <cstdlib>
#include <webp/decode.h>
#include <webp/demux.h>

constexpr long LARGEST_FILE = 1l << 30;

// Null and a size: there is not so much memory.
static LargeBytes readWhole(FILE* file, size_t* size)
{
    *size = 0;
    const long end = fseek(file, 0, SEEK_END) == 0 ? ftell(file) : 0;
    if (end <= 0 || end > LARGEST_FILE || fseek(file, 0, SEEK_SET) != 0) return nullptr;
    *size = (size_t)end;
    LargeBytes bytes = allocateLarge(*size);
    if (bytes) *size = fread(bytes.get(), 1, *size, file);
    return bytes;
}

static std::vector<uint8_t> chunkOf(const WebPDemuxer* file, const char* name)
{
    std::vector<uint8_t> bytes;
    WebPChunkIterator chunk;
    if (WebPDemuxGetChunk(file, name, 1, &chunk)) bytes.assign(chunk.chunk.bytes, chunk.chunk.bytes + chunk.chunk.size);
    WebPDemuxReleaseChunkIterator(&chunk);
    return bytes;
}

static void collectFacts(const WebPDemuxer* file, PhotoFacts* facts)
{
    facts->profile = chunkOf(file, "ICCP");
    facts->exif = chunkOf(file, "EXIF");
    if (facts->exif.size() > 6 && facts->exif[0] == 'E')
        facts->exif.erase(facts->exif.begin(), facts->exif.begin() + 6);
    facts->xmp = chunkOf(file, "XMP ");
    facts->orientation = exifOrientation(facts->exif.data(), facts->exif.size());
    facts->alpha = WebPDemuxGetI(file, WEBP_FF_FORMAT_FLAGS) & ALPHA_FLAG;
    facts->animated = WebPDemuxGetI(file, WEBP_FF_FRAME_COUNT) > 1;
}

// canvas: blue, green, red, alpha; the frame lies on a transparent ground.
static PhotoStatus decodeFrame(const WebPIterator& frame, uint8_t* canvas, int width)
{
    WebPDecoderConfig config;
    if (!WebPInitDecoderConfig(&config)) return PhotoStatus::NotAPhoto;
    config.output.colorspace = MODE_BGRA;
    config.output.is_external_memory = 1;
    config.output.u.RGBA.rgba = canvas + ((size_t)frame.y_offset * width + frame.x_offset) * 4;
    config.output.u.RGBA.stride = width * 4;
    config.output.u.RGBA.size = ((size_t)(frame.height - 1) * width + frame.width) * 4;
    switch (WebPDecode(frame.fragment.bytes, frame.fragment.size, &config)) {
    case VP8_STATUS_OK: return PhotoStatus::Ok;
    case VP8_STATUS_OUT_OF_MEMORY: return PhotoStatus::TooLarge;
    default: return PhotoStatus::NotAPhoto;
    }
}

static PhotoStatus decode(const WebPDemuxer* file, const RowSink& sink, PhotoFacts* facts)
{
    collectFacts(file, facts);
    const int width = (int)WebPDemuxGetI(file, WEBP_FF_CANVAS_WIDTH);
    const int height = (int)WebPDemuxGetI(file, WEBP_FF_CANVAS_HEIGHT);
    WebPIterator frame;
    if (width < 1 || height < 1 || !WebPDemuxGetFrame(file, 1, &frame)) return PhotoStatus::NotAPhoto;
    PhotoStatus status = sink.begin(sink.context, {width, height, facts->orientation, 0, 0});
    uint8_t* canvas = status == PhotoStatus::Ok ? (uint8_t*)calloc((size_t)width * height, 4) : nullptr;
    if (status == PhotoStatus::Ok && !canvas) status = PhotoStatus::TooLarge;
    if (canvas) status = decodeFrame(frame, canvas, width);
    if (status == PhotoStatus::Ok) {
        ColorBridge bridge = openBridge(facts->profile, 0, false);
        for (int row = 0; row < height; ++row)
            showColors(bridge, canvas + (size_t)row * width * 4, width);
        closeBridge(&bridge);
        if (!sink.take(sink.context, canvas, (ptrdiff_t)width * 4, 0, height)) status = PhotoStatus::NotAPhoto;
    }
    free(canvas);
    WebPDemuxReleaseIterator(&frame);
    return status;
}

PhotoStatus readWebp(FILE* file, const RowSink& sink, PhotoFacts* facts)
{
    size_t size;
    const LargeBytes bytes = readWhole(file, &size);
    if (!bytes && size) return PhotoStatus::TooLarge;
    const WebPData data = {bytes.get(), size};
    WebPDemuxer* demuxer = bytes ? WebPDemux(&data) : nullptr;
    if (!demuxer) return PhotoStatus::NotAPhoto;
    const PhotoStatus status = decode(demuxer, sink, facts);
    WebPDemuxDelete(demuxer);
    return status;
}
