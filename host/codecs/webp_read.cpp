#include "host/codecs/webp_file.h"

#include "host/codecs/color_bridge.h"
#include "host/photo/exif_edit.h"

#include <algorithm>
#include <cstdlib>
#include <webp/decode.h>
#include <webp/demux.h>

namespace {

constexpr long LARGEST_FILE = 1l << 30;

std::vector<uint8_t> readWhole(FILE* file)
{
    std::vector<uint8_t> bytes;
    if (fseek(file, 0, SEEK_END) != 0) return bytes;
    const long size = ftell(file);
    if (size <= 0 || size > LARGEST_FILE || fseek(file, 0, SEEK_SET) != 0) return bytes;
    bytes.resize((size_t)size);
    bytes.resize(fread(bytes.data(), 1, bytes.size(), file));
    return bytes;
}

std::vector<uint8_t> chunkOf(const WebPDemuxer* file, const char* name)
{
    std::vector<uint8_t> bytes;
    WebPChunkIterator chunk;
    if (WebPDemuxGetChunk(file, name, 1, &chunk)) bytes.assign(chunk.chunk.bytes, chunk.chunk.bytes + chunk.chunk.size);
    WebPDemuxReleaseChunkIterator(&chunk);
    return bytes;
}

void collectFacts(const WebPDemuxer* file, PhotoFacts* facts)
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
bool decodeFrame(const WebPIterator& frame, uint8_t* canvas, int width)
{
    uint8_t* corner = canvas + ((size_t)frame.y_offset * width + frame.x_offset) * 4;
    const size_t size = ((size_t)(frame.height - 1) * width + frame.width) * 4;
    return WebPDecodeBGRAInto(frame.fragment.bytes, frame.fragment.size, corner, size, width * 4) != nullptr;
}

PhotoStatus decode(const WebPDemuxer* file, const RowSink& sink, PhotoFacts* facts)
{
    collectFacts(file, facts);
    const int width = (int)WebPDemuxGetI(file, WEBP_FF_CANVAS_WIDTH);
    const int height = (int)WebPDemuxGetI(file, WEBP_FF_CANVAS_HEIGHT);
    WebPIterator frame;
    if (width < 1 || height < 1 || !WebPDemuxGetFrame(file, 1, &frame)) return PhotoStatus::NotAPhoto;
    PhotoStatus status = sink.begin(sink.context, {width, height, facts->orientation, 0, 0});
    uint8_t* canvas = status == PhotoStatus::Ok ? (uint8_t*)calloc((size_t)width * height, 4) : nullptr;
    if (status == PhotoStatus::Ok && !canvas) status = PhotoStatus::TooLarge;
    if (canvas && !decodeFrame(frame, canvas, width)) status = PhotoStatus::NotAPhoto;
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

}  // namespace

PhotoStatus readWebp(FILE* file, const RowSink& sink, PhotoFacts* facts)
{
    const std::vector<uint8_t> bytes = readWhole(file);
    const WebPData data = {bytes.data(), bytes.size()};
    WebPDemuxer* demuxer = bytes.empty() ? nullptr : WebPDemux(&data);
    if (!demuxer) return PhotoStatus::NotAPhoto;
    const PhotoStatus status = decode(demuxer, sink, facts);
    WebPDemuxDelete(demuxer);
    return status;
}
