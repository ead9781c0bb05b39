#include "host/photo_file.h"

#include "host/exif_orientation.h"
#include "host/photo_rows.h"

#include <algorithm>
#include <cmath>
#include <objbase.h>
#include <vector>
#include <wincodec.h>
#include <wincodecsdk.h>

namespace {

const double metresPerInch = 0.0254;
const float jpegQuality = 0.95f;
const int bandRows = 64;

IWICImagingFactory* imaging;
bool initialized;

template <typename T>
void release(T*& pointer)
{
    if (pointer) pointer->Release();
    pointer = nullptr;
}

// A photo file opened for reading.
struct OpenPhoto {
    IWICBitmapDecoder* decoder = nullptr;
    IWICBitmapFrameDecode* frame = nullptr;
    UINT width = 0, height = 0;
};

bool openPhoto(const wchar_t* path, OpenPhoto* photo)
{
    return SUCCEEDED(imaging->CreateDecoderFromFilename(path, nullptr, GENERIC_READ, WICDecodeMetadataCacheOnDemand,
                                                        &photo->decoder)) &&
           SUCCEEDED(photo->decoder->GetFrame(0, &photo->frame)) &&
           SUCCEEDED(photo->frame->GetSize(&photo->width, &photo->height));
}

void closePhoto(OpenPhoto* photo)
{
    release(photo->frame);
    release(photo->decoder);
}

// Tells apart why a file cannot be opened, and refuses folders, before the decoders look at it.
PhotoStatus probeFile(const wchar_t* path)
{
    const DWORD attributes = GetFileAttributesW(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return GetLastError() == ERROR_ACCESS_DENIED ? PhotoStatus::Unreadable : PhotoStatus::Missing;
    }
    if (attributes & FILE_ATTRIBUTE_DIRECTORY) return PhotoStatus::Unreadable;
    HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return PhotoStatus::Unreadable;
    CloseHandle(file);
    return PhotoStatus::Ok;
}

// Reads as much as there is, at most `size` bytes from `place` on.
std::vector<uint8_t> readPart(HANDLE file, uint32_t place, size_t size)
{
    std::vector<uint8_t> bytes(size);
    OVERLAPPED at = {};
    at.Offset = place;
    DWORD got = 0;
    if (!ReadFile(file, bytes.data(), (DWORD)size, &got, &at)) got = 0;
    bytes.resize(got);
    return bytes;
}

// The camera's note stands near the start of a JPEG file, in one segment of at most 64 KB; in a TIFF file the
// directory that holds it may be anywhere.
int orientationOfFile(const wchar_t* path)
{
    HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 1;
    const std::vector<uint8_t> start = readPart(file, 0, 256 * 1024);
    const uint32_t directory = start.size() < TIFF_HEAD_SIZE ? 0 : tiffDirectoryPlace(start.data());
    int orientation = 1;
    if (directory) {
        const std::vector<uint8_t> entries = readPart(file, directory, 2 + 12 * 65535);
        orientation = tiffOrientation(start.data(), entries.data(), entries.size());
    } else {
        orientation = jpegOrientation(start.data(), start.size());
    }
    CloseHandle(file);
    return orientation;
}

LONG pelsPerMetre(double dotsPerInch)
{
    return dotsPerInch > 0 && dotsPerInch < 1e6 ? std::lround(dotsPerInch / metresPerInch) : 0;
}

void fillHeader(BITMAPINFOHEADER* header, LONG width, LONG height, IWICBitmapFrameDecode* frame, bool swapped)
{
    header->biSize = sizeof(BITMAPINFOHEADER);
    header->biWidth = width;
    header->biHeight = height;
    header->biPlanes = 1;
    header->biBitCount = 24;
    double across = 0, down = 0;
    if (FAILED(frame->GetResolution(&across, &down))) return;
    if (swapped) std::swap(across, down);
    header->biXPelsPerMeter = pelsPerMetre(across);
    header->biYPelsPerMeter = pelsPerMetre(down);
}

// Decodes band by band, so that only the result is ever in memory as a whole.
bool decodeRows(IWICBitmapSource* pixels, const UprightTarget& target)
{
    const UINT stride = (UINT)target.fileWidth * 4;
    const int rows = std::max(1, std::min(bandRows, (int)(INT32_MAX / stride)));
    std::vector<uint8_t> band((size_t)stride * rows);
    for (int row = 0; row < target.fileHeight; row += rows) {
        const int count = std::min(rows, target.fileHeight - row);
        const WICRect part = {0, row, target.fileWidth, count};
        if (FAILED(pixels->CopyPixels(&part, stride, stride * count, band.data()))) return false;
        placeRowsOverWhite(target, band.data(), stride, row, count);
    }
    return true;
}

// A session keeps an untouched copy, so twice the size must be free; else it would not start and the
// user would not learn why.
HGLOBAL allocatePhoto(uint32_t size)
{
    HGLOBAL copy = GlobalAlloc(GMEM_MOVEABLE, size);
    HGLOBAL image = copy ? GlobalAlloc(GHND, size) : nullptr;
    GlobalFree(copy);
    return image;
}

PhotoStatus decodePhoto(const OpenPhoto& photo, int orientation, HGLOBAL* image)
{
    const bool swapped = orientationSwapsSides(orientation);
    const UINT width = swapped ? photo.height : photo.width, height = swapped ? photo.width : photo.height;
    if (width == 0 || height == 0) return PhotoStatus::NotAPhoto;
    const uint32_t size = packedPhotoSize(width, height);
    if (!size || !packedPhotoSize(photo.width, photo.height)) return PhotoStatus::TooLarge;
    IWICBitmapSource* pixels = nullptr;
    if (FAILED(WICConvertBitmapSource(GUID_WICPixelFormat32bppBGRA, photo.frame, &pixels)))
        return PhotoStatus::NotAPhoto;

    PhotoStatus status = PhotoStatus::TooLarge;
    *image = allocatePhoto(size);
    BITMAPINFOHEADER* header = *image ? (BITMAPINFOHEADER*)GlobalLock(*image) : nullptr;
    if (header) {
        fillHeader(header, (LONG)width, (LONG)height, photo.frame, swapped);
        const UprightTarget target = {(uint8_t*)(header + 1), (int)photo.width, (int)photo.height, orientation};
        status = decodeRows(pixels, target) ? PhotoStatus::Ok : PhotoStatus::NotAPhoto;
        GlobalUnlock(*image);
    }
    if (status != PhotoStatus::Ok && *image) {
        GlobalFree(*image);
        *image = nullptr;
    }
    release(pixels);
    return status;
}

struct Encoder {
    IStream* stream = nullptr;
    IWICBitmapEncoder* container = nullptr;
    IWICBitmapFrameEncode* frame = nullptr;
    IPropertyBag2* options = nullptr;
};

void closeEncoder(Encoder* encoder)
{
    release(encoder->options);
    release(encoder->frame);
    release(encoder->container);
    release(encoder->stream);
}

const GUID* containerOf(PhotoFormat format)
{
    switch (format) {
    case PhotoFormat::Jpeg: return &GUID_ContainerFormatJpeg;
    case PhotoFormat::Png: return &GUID_ContainerFormatPng;
    case PhotoFormat::Tiff: return &GUID_ContainerFormatTiff;
    case PhotoFormat::Bmp: return &GUID_ContainerFormatBmp;
    case PhotoFormat::Unknown: break;
    }
    return nullptr;
}

void setQuality(IPropertyBag2* options)
{
    wchar_t name[] = L"ImageQuality";
    PROPBAG2 option = {};
    option.pstrName = name;
    VARIANT value = {};
    value.vt = VT_R4;
    value.fltVal = jpegQuality;
    if (options) options->Write(1, &option, &value);
}

bool openEncoder(PhotoFormat format, HGLOBAL file, Encoder* encoder)
{
    const GUID* container = containerOf(format);
    if (!container || FAILED(CreateStreamOnHGlobal(file, FALSE, &encoder->stream)) ||
        FAILED(imaging->CreateEncoder(*container, nullptr, &encoder->container)) ||
        FAILED(encoder->container->Initialize(encoder->stream, WICBitmapEncoderNoCache)) ||
        FAILED(encoder->container->CreateNewFrame(&encoder->frame, &encoder->options)))
        return false;
    if (format == PhotoFormat::Jpeg) setQuality(encoder->options);
    return SUCCEEDED(encoder->frame->Initialize(encoder->options));
}

// A profile for grey or CMYK values says nothing about the red, green and blue that are written.
bool holdsRgb(IWICBitmapFrameDecode* frame)
{
    static const GUID* const rgbFormats[] = {
        &GUID_WICPixelFormat24bppBGR,  &GUID_WICPixelFormat24bppRGB,  &GUID_WICPixelFormat32bppBGR,
        &GUID_WICPixelFormat32bppBGRA, &GUID_WICPixelFormat32bppRGBA, &GUID_WICPixelFormat48bppRGB,
        &GUID_WICPixelFormat64bppRGBA,
    };
    WICPixelFormatGUID format;
    if (FAILED(frame->GetPixelFormat(&format))) return false;
    for (const GUID* rgb : rgbFormats)
        if (IsEqualGUID(format, *rgb)) return true;
    return false;
}

bool copyProfile(IWICBitmapFrameDecode* from, IWICBitmapFrameEncode* to)
{
    UINT count = 0;
    if (!holdsRgb(from) || FAILED(from->GetColorContexts(0, nullptr, &count)) || count == 0) return true;
    IWICColorContext* profile = nullptr;
    bool copied = SUCCEEDED(imaging->CreateColorContext(&profile)) &&
                  SUCCEEDED(from->GetColorContexts(1, &profile, &count)) &&
                  SUCCEEDED(to->SetColorContexts(1, &profile));
    release(profile);
    return copied;
}

// The written picture is upright, so a noted orientation must not turn it once more.
bool noteUpright(IWICBitmapFrameEncode* to, PhotoFormat format)
{
    IWICMetadataQueryWriter* writer = nullptr;
    if (FAILED(to->GetMetadataQueryWriter(&writer))) return false;
    PROPVARIANT upright = {};
    upright.vt = VT_UI2;
    upright.uiVal = 1;
    const wchar_t* place = format == PhotoFormat::Jpeg ? L"/app1/ifd/{ushort=274}" : L"/ifd/{ushort=274}";
    const bool noted = SUCCEEDED(writer->SetMetadataByName(place, &upright));
    release(writer);
    return noted;
}

// Camera data can be carried over between files of one format only.
bool copyCameraData(const OpenPhoto& from, IWICBitmapFrameEncode* to, PhotoFormat format)
{
    GUID container;
    if (format == PhotoFormat::Bmp || FAILED(from.decoder->GetContainerFormat(&container)) ||
        !IsEqualGUID(container, *containerOf(format)))
        return true;
    IWICMetadataBlockReader* reader = nullptr;
    IWICMetadataBlockWriter* writer = nullptr;
    bool copied = SUCCEEDED(from.frame->QueryInterface(__uuidof(IWICMetadataBlockReader), (void**)&reader)) &&
                  SUCCEEDED(to->QueryInterface(__uuidof(IWICMetadataBlockWriter), (void**)&writer)) &&
                  SUCCEEDED(writer->InitializeFromBlockReader(reader));
    if (copied && format != PhotoFormat::Png) copied = noteUpright(to, format);
    release(writer);
    release(reader);
    return copied;
}

bool writeRows(IWICBitmapFrameEncode* frame, const BITMAPINFOHEADER* header)
{
    const int width = header->biWidth, height = header->biHeight;
    const uint8_t* bits = (const uint8_t*)header + header->biSize;
    const UINT stride = packedRowSize(width);
    std::vector<uint8_t> band((size_t)stride * bandRows);
    for (int row = 0; row < height; row += bandRows) {
        const int count = std::min(bandRows, height - row);
        copyRowsTopDown(bits, width, height, row, count, band.data(), stride);
        if (FAILED(frame->WritePixels(count, stride, stride * count, band.data()))) return false;
    }
    return true;
}

bool writeFrame(const Encoder& encoder, const BITMAPINFOHEADER* header)
{
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    if (FAILED(encoder.frame->SetSize((UINT)header->biWidth, (UINT)header->biHeight)) ||
        FAILED(encoder.frame->SetPixelFormat(&format)) || !IsEqualGUID(format, GUID_WICPixelFormat24bppBGR))
        return false;
    if (header->biXPelsPerMeter > 0 && header->biYPelsPerMeter > 0)
        encoder.frame->SetResolution(header->biXPelsPerMeter * metresPerInch, header->biYPelsPerMeter * metresPerInch);
    return writeRows(encoder.frame, header) && SUCCEEDED(encoder.frame->Commit()) &&
           SUCCEEDED(encoder.container->Commit());
}

bool streamLength(IStream* stream, size_t* size)
{
    STATSTG state = {};
    if (FAILED(stream->Stat(&state, STATFLAG_NONAME))) return false;
    *size = (size_t)state.cbSize.QuadPart;
    return *size > 0;
}

// original: null, or the photo whose profile and camera data go along.
bool encodeInto(HGLOBAL file, const BITMAPINFOHEADER* header, PhotoFormat format, const OpenPhoto* original,
                size_t* size)
{
    Encoder encoder;
    bool done = openEncoder(format, file, &encoder);
    if (done && original)
        done = copyCameraData(*original, encoder.frame, format) && copyProfile(original->frame, encoder.frame);
    done = done && writeFrame(encoder, header) && streamLength(encoder.stream, size);
    closeEncoder(&encoder);
    return done;
}

}  // namespace

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

PhotoStatus readPhoto(const wchar_t* path, HGLOBAL* image)
{
    *image = nullptr;
    if (!imaging) return PhotoStatus::NoImaging;
    PhotoStatus status = probeFile(path);
    if (status != PhotoStatus::Ok) return status;
    OpenPhoto photo;
    status = openPhoto(path, &photo) ? decodePhoto(photo, orientationOfFile(path), image) : PhotoStatus::NotAPhoto;
    closePhoto(&photo);
    return status;
}

PhotoStatus encodePhoto(HGLOBAL image, PhotoFormat format, const wchar_t* original, HGLOBAL* file, size_t* size)
{
    *file = nullptr;
    *size = 0;
    if (!imaging) return PhotoStatus::NoImaging;
    const BITMAPINFOHEADER* header = image ? (const BITMAPINFOHEADER*)GlobalLock(image) : nullptr;
    if (!header) return PhotoStatus::CannotEncode;
    OpenPhoto photo;
    bool done = false;
    // An encoder that chokes on the extras is asked once more without them.
    for (int extras = original && openPhoto(original, &photo) ? 1 : 0; extras >= 0 && !done; extras--) {
        *file = GlobalAlloc(GMEM_MOVEABLE, 0);
        done = *file && encodeInto(*file, header, format, extras ? &photo : nullptr, size);
        if (!done && *file) *file = GlobalFree(*file);
    }
    closePhoto(&photo);
    GlobalUnlock(image);
    return done ? PhotoStatus::Ok : PhotoStatus::CannotEncode;
}
