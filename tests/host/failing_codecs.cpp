// Stands beside a copy of retouch.exe under the name of the system's imaging component, and fails: at pictures one
// pixel wide it crashes, for others it has no memory.
#include <windows.h>

#include <wincodec.h>

extern "C" __declspec(dllexport) HRESULT WINAPI
    WICConvertBitmapSource(REFWICPixelFormatGUID, IWICBitmapSource* picture, IWICBitmapSource**)
{
    UINT width = 0, height = 0;
    picture->GetSize(&width, &height);
    volatile UINT* nowhere = nullptr;
    if (width == 1) *nowhere = width;
    return E_OUTOFMEMORY;
}
