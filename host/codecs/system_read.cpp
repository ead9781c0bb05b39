#include "host/codecs/system_file.h"

#include "host/codecs/color_bridge.h"

#include "host/photo/gif_canvas.h"

#include <algorithm>
#include <cmath>
#include <objbase.h>
#include <wincodec.h>

constexpr size_t COMFORTABLE_BAND = 16 << 20;

static IWICImagingFactory* imaging;
static bool initialized;

template <typename T>
static void release(T*& pointer)
{
    if (pointer) pointer->Release();
    pointer = nullptr;
}

// A photo file opened for reading.
struct OpenPhoto {
    IWICBitmapDecoder* decoder = nullptr;
    IWICBitmapFrameDecode* frame = nullptr;
    IWICBitmapSource* pixels = nullptr;
    UINT width = 0, height = 0;
    GifCanvas canvas;  // what the frame lies on; of the frame's own size except for GIF files
};

static PhotoStatus statusOf(HRESULT result)
{
    if (SUCCEEDED(result)) return PhotoStatus::Ok;
    return result == E_OUTOFMEMORY ? PhotoStatus::TooLarge : PhotoStatus::NotAPhoto;
}

static PhotoStatus openPhoto(const wchar_t* path, OpenPhoto* photo)
{
    HRESULT result = imaging->CreateDecoderFromFilename(path, nullptr, GENERIC_READ, WICDecodeMetadataCacheOnDemand,
                                                        &photo->decoder);
    if (SUCCEEDED(result)) result = photo->decoder->GetFrame(0, &photo->frame);
    if (SUCCEEDED(result)) result = photo->frame->GetSize(&photo->width, &photo->height);
    if (SUCCEEDED(result) && !(photo->width && photo->height)) result = E_FAIL;
    return statusOf(result);
}

static void closePhoto(OpenPhoto* photo)
{
    release(photo->pixels);
    release(photo->frame);
    release(photo->decoder);
}

static void placeOnCanvas(const wchar_t* path, OpenPhoto* photo)
{
    std::vector<uint8_t> head(64 * 1024);
    FILE* file = _wfopen(path, L"rb");
    head.resize(file ? fread(head.data(), 1, head.size(), file) : 0);
    if (file) fclose(file);
    const int width = (int)photo->width, height = (int)photo->height;
    photo->canvas = gifCanvas(head.data(), head.size(), width, height);
}

static long pelsPerMetre(double dotsPerInch)
{
    return dotsPerInch > 0 && dotsPerInch < 1e6 ? std::lround(dotsPerInch / 0.0254) : 0;
}

static PhotoStatus handRows(const OpenPhoto& photo, const ColorBridge& bridge, const RowSink& sink)
{
    const GifCanvas& canvas = photo.canvas;
    const size_t stride = (size_t)canvas.width * 4;
    const int most = (int)std::max<size_t>(1, std::min<size_t>(64, COMFORTABLE_BAND / stride));
    std::vector<uint8_t> band(stride * most);
    for (int row = 0; row < canvas.height; row += most) {
        const int count = std::min(most, canvas.height - row);
        std::fill(band.begin(), band.end(), 0);
        const int first = std::max(row, canvas.top), last = std::min(row + count, canvas.top + (int)photo.height);
        if (first < last) {
            const WICRect part = {0, first - canvas.top, (INT)photo.width, last - first};
            const size_t at = (size_t)(first - row) * stride + (size_t)canvas.left * 4;
            const HRESULT result =
                photo.pixels->CopyPixels(&part, (UINT)stride, (UINT)(band.size() - at), band.data() + at);
            if (FAILED(result)) return statusOf(result);
        }
        for (int i = 0; i < count; ++i)
            showColors(bridge, band.data() + (size_t)i * stride, canvas.width);
        if (!sink.take(sink.context, band.data(), (ptrdiff_t)stride, row, count)) return PhotoStatus::NotAPhoto;
    }
    return PhotoStatus::Ok;
}

static PhotoStatus decode(const OpenPhoto& photo, const RowSink& sink, PhotoFacts* facts)
{
    UINT frames = 1;
    GUID kind = {};
    photo.decoder->GetFrameCount(&frames);
    photo.decoder->GetContainerFormat(&kind);
    facts->pages = (int)frames;
    facts->animated = frames > 1 && IsEqualGUID(kind, GUID_ContainerFormatGif);
    double across = 0, down = 0;
    photo.frame->GetResolution(&across, &down);
    const PhotoShape shape = {photo.canvas.width, photo.canvas.height, 1, pelsPerMetre(across), pelsPerMetre(down)};
    PhotoStatus status = sink.begin(sink.context, shape);
    if (status != PhotoStatus::Ok) return status;
    ColorBridge bridge = openBridge(facts->profile, 0, false);
    status = handRows(photo, bridge, sink);
    closeBridge(&bridge);
    return status;
}

bool startImaging()
{
    initialized = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    return SUCCEEDED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                      (void**)&imaging));
}

void stopImaging()
{
    release(imaging);
    if (initialized) CoUninitialize();
    initialized = false;
}

PhotoStatus readBySystem(const wchar_t* path, const RowSink& sink, PhotoFacts* facts)
{
    if (!imaging) return PhotoStatus::NoImaging;
    OpenPhoto photo;
    PhotoStatus status = openPhoto(path, &photo);
    if (status == PhotoStatus::Ok) {
        placeOnCanvas(path, &photo);
        status = packedPhotoSize(photo.canvas.width, photo.canvas.height)
                     ? statusOf(WICConvertBitmapSource(GUID_WICPixelFormat32bppBGRA, photo.frame, &photo.pixels))
                     : PhotoStatus::TooLarge;
    }
    if (status == PhotoStatus::Ok) status = decode(photo, sink, facts);
    closePhoto(&photo);
    return status;
}
