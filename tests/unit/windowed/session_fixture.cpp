#include "tests/unit/windowed/session_fixture.h"

#include <cstdio>
#include <cstring>

#include "canvas/canvas.h"
#include "image/bitmap_locks.h"
#include "image/original_image.h"
#include "image/packed_bitmap.h"
#include "session/ground/module_state.h"
#include "session/ground/window_props.h"
#include "tools/painting/undo_history.h"

constexpr char HOST_CLASS[] = "SessionFixtureHost";

HGLOBAL bitmapOf(const reference::Picture& picture)
{
    const HGLOBAL bitmap = createBitmap(picture.width, picture.height, 24);
    GuardedImage packed = imageOf(picture);
    const LockedPixels pixels(bitmap);
    if (!pixels) return nullptr;
    memcpy(rowOf(pixels.view, picture.height - 1), rowOf(packed.view(), picture.height - 1),
           packed.stride * picture.height);
    return bitmap;
}

bool showsPicture(HGLOBAL image, const reference::Picture& picture)
{
    GuardedImage expected = imageOf(picture);
    const LockedPixels pixels(image);
    if (!pixels) return false;
    const bool same = pixels.view.width == picture.width && pixels.view.height == picture.height &&
                      memcmp(rowOf(pixels.view, picture.height - 1), rowOf(expected.view(), picture.height - 1),
                             expected.stride * picture.height) == 0;
    return same;
}

COLORREF colorrefOf(reference::Pixel pixel)
{
    return RGB(pixel.red, pixel.green, pixel.blue);
}

static HWND createHost(SIZE client, bool visible)
{
    WNDCLASSA hostClass = {};
    hostClass.lpfnWndProc = DefWindowProcA;
    hostClass.hInstance = moduleInstance;
    hostClass.lpszClassName = HOST_CLASS;
    if (!RegisterClassA(&hostClass)) return nullptr;
    const DWORD style = WS_POPUP | (visible ? WS_VISIBLE : 0);
    return CreateWindowExA(visible ? WS_EX_TOPMOST : 0, HOST_CLASS, "", style, 100, 80, client.cx, client.cy, nullptr,
                           nullptr, moduleInstance, nullptr);
}

bool SessionFixture::open(const reference::Picture& picture, SIZE client, bool visible)
{
    if (client.cx == 0) client = {picture.width, picture.height};
    return openOn(bitmapOf(picture), client, visible);
}

bool SessionFixture::openOn(HGLOBAL bitmap, SIZE client, bool visible)
{
    image = bitmap;
    if (!moduleInstance) moduleInstance = GetModuleHandleA(nullptr);
    session = (SessionRecord*)calloc(1, sizeof(SessionRecord));
    host = createHost(client, visible);
    if (!image || !session || !host || !registerCanvasClass(moduleInstance)) return false;
    session->hostDialog = host;
    setWindowProp(host, PROP_IMAGE, image);
    const HWND canvas = CreateWindowExA(0, CANVAS_CLASS, "", WS_CHILD | (visible ? WS_VISIBLE : 0), 0, 0, client.cx,
                                        client.cy, host, nullptr, moduleInstance, nullptr);
    if (!canvas) return false;
    setWindowProp(host, PROP_CANVAS, canvas);
    mapCanvas(canvas);
    session->overlayEnabled = visible;
    session->mouseInside = 1;
    if (visible) UpdateWindow(canvas);
    return keepOriginal(image);
}

void SessionFixture::close()
{
    if (!session) return;
    if (session->paletteDialog) DestroyWindow(session->paletteDialog);
    removeWindowProp(host, PROP_IMAGE);
    removeWindowProp(host, PROP_CANVAS);
    DestroyWindow(host);
    freeUndoHistory();
    releaseOriginal();
    for (HGLOBAL block : {session->brushMask, session->maskCache, session->strokeCoverage, session->strokeStartImage,
                          session->undoSnapshot, image}) {
        if (block) GlobalFree(block);
    }
    free(session);
    session = nullptr;
    unregisterCanvasClass(moduleInstance);
    UnregisterClassA(HOST_CLASS, moduleInstance);
}

static std::string directoryOfTests()
{
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    const std::string whole = path;
    return whole.substr(0, whole.rfind('\\') + 1);
}

bool moveModuleHome(ModuleHome* home)
{
    static int number = 0;
    char temporary[MAX_PATH], name[64];
    GetTempPathA(MAX_PATH, temporary);
    snprintf(name, sizeof name, "module%lu-%d", GetCurrentProcessId(), ++number);
    home->directory = std::string(temporary) + name + "\\";
    home->before = moduleInstance;
    home->module = nullptr;
    if (!CreateDirectoryA(home->directory.c_str(), nullptr)) return false;
    const std::string copy = home->directory + "KOVRTCH32.dll";
    if (!CopyFileA((directoryOfTests() + "KOVRTCH32.dll").c_str(), copy.c_str(), FALSE)) return false;
    home->module = LoadLibraryExA(copy.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
    if (home->module) moduleInstance = home->module;
    return home->module != nullptr;
}

void leaveModuleHome(ModuleHome* home)
{
    moduleInstance = home->before;
    if (home->module) FreeLibrary(home->module);
    for (const char* name : {"KOVRTCH32.dll", "KOVRTCH.INI", "KOVRTOUCH.INI"}) {
        const std::string path = home->directory + name;
        SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileA(path.c_str());
        RemoveDirectoryA(path.c_str());
    }
    RemoveDirectoryA(home->directory.c_str());
}

std::string readFile(const std::string& path)
{
    std::string content;
    FILE* file = fopen(path.c_str(), "rb");
    if (!file) return content;
    char part[4096];
    for (size_t got; (got = fread(part, 1, sizeof part, file)) != 0;)
        content.append(part, got);
    fclose(file);
    return content;
}

void writeFile(const std::string& path, const std::string& content)
{
    FILE* file = fopen(path.c_str(), "wb");
    if (!file) return;
    fwrite(content.data(), 1, content.size(), file);
    fclose(file);
}
