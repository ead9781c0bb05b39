#include "tests/faults/fallible.h"

#include <commctrl.h>
#include <commdlg.h>

#include <cstdlib>
#include <cstring>

#include "tests/faults/fallible_stub.h"

#define ROW(function, ...) stubEntry<__COUNTER__, decltype(&function)>(#function, __VA_ARGS__)
#define FAILS(function) ROW(function, 0, true)
#define FAILS_EMPTY(function, buffer) ROW(function, 0, true, NO_ENTRY, MEMORY_BLOCKS, buffer)
#define FAILS_WITH(function, failure) ROW(function, failure, true)

static Fallible* const table[] = {
    // Memory.
    ROW(GlobalAlloc, 0, true, MAKES, MEMORY_BLOCKS),
    ROW(GlobalFree, 0, false, RELEASES_FIRST, MEMORY_BLOCKS),
    FAILS(GlobalReAlloc),
    FAILS(GlobalLock),
    FAILS(GlobalSize),
    ROW(HeapAlloc, 0, true, MAKES, HEAP_BLOCKS),
    ROW(HeapFree, 0, false, RELEASES, HEAP_BLOCKS),
    ROW(malloc, 0, true, MAKES, HEAP_BLOCKS),
    ROW(calloc, 0, true, MAKES, HEAP_BLOCKS),
    ROW(realloc, 0, true, RESIZES, HEAP_BLOCKS),
    ROW(free, 0, false, FREES, HEAP_BLOCKS),
    FAILS(VirtualAlloc),
    FAILS(GlobalMemoryStatusEx),
    // Files, profiles, resources, texts.
    ROW(CreateFileW, -1, true, MAKES, FILES),
    ROW(CloseHandle, 0, false, RELEASES, FILES),
    FAILS(ReadFile),
    FAILS(WriteFile),
    FAILS(FlushFileBuffers),
    FAILS(SetFilePointerEx),
    FAILS(SetEndOfFile),
    FAILS(GetFileSizeEx),
    FAILS(MoveFileExW),
    FAILS(DeleteFileW),
    FAILS(CreateDirectoryW),
    FAILS_WITH(GetFileAttributesW, -1),
    ROW(FindFirstFileW, -1, true, MAKES, SEARCHES),
    FAILS(FindNextFileW),
    ROW(FindClose, 0, false, RELEASES, SEARCHES),
    FAILS_EMPTY(GetModuleFileNameW, 1),
    FAILS_EMPTY(GetPrivateProfileStringW, 3),
    FAILS(WritePrivateProfileStringW),
    FAILS_EMPTY(GetProfileStringA, 3),
    FAILS(GetLocaleInfoA),
    FAILS(GetCPInfo),
    FAILS(MultiByteToWideChar),
    FAILS(WideCharToMultiByte),
    FAILS(FindResourceA),
    FAILS(FindResourceW),
    FAILS(LoadResource),
    FAILS(LockResource),
    FAILS(SizeofResource),
    FAILS_EMPTY(LoadStringW, 2),
    ROW(LoadBitmapA, 0, true, MAKES, GRAPHICS_OBJECTS),
    ROW(LoadBitmapW, 0, true, MAKES, GRAPHICS_OBJECTS),
    ROW(LoadImageA, 0, true, MAKES, GRAPHICS_OBJECTS),
    ROW(LoadImageW, 0, true, MAKES, GRAPHICS_OBJECTS),
    FAILS(LoadCursorA),
    FAILS(LoadLibraryA),
    // Graphics.
    ROW(CreateBitmap, 0, true, MAKES, GRAPHICS_OBJECTS),
    ROW(CreateCompatibleBitmap, 0, true, MAKES, GRAPHICS_OBJECTS),
    ROW(CreateCompatibleDC, 0, true, MAKES, GRAPHICS_OBJECTS),
    ROW(CreateDIBSection, 0, true, MAKES, GRAPHICS_OBJECTS),
    ROW(CreateFontIndirectA, 0, true, MAKES, GRAPHICS_OBJECTS),
    ROW(CreateFontIndirectW, 0, true, MAKES, GRAPHICS_OBJECTS),
    ROW(CreatePen, 0, true, MAKES, GRAPHICS_OBJECTS),
    ROW(CreateSolidBrush, 0, true, MAKES, GRAPHICS_OBJECTS),
    ROW(CreateRectRgn, 0, true, MAKES, GRAPHICS_OBJECTS),
    ROW(DeleteObject, 0, false, RELEASES, GRAPHICS_OBJECTS),
    ROW(DeleteDC, 0, false, RELEASES, GRAPHICS_OBJECTS),
    ROW(GetDC, 0, true, MAKES, DEVICE_CONTEXTS),
    ROW(GetWindowDC, 0, true, MAKES, DEVICE_CONTEXTS),
    ROW(ReleaseDC, 0, false, RELEASES, DEVICE_CONTEXTS),
    FAILS(BeginPaint),
    FAILS(SelectObject),
    FAILS(GetStockObject),
    FAILS(GetObjectA),
    FAILS(GetObjectW),
    FAILS(GetDIBits),
    FAILS(SetDIBits),
    FAILS(StretchDIBits),
    FAILS(BitBlt),
    FAILS(StretchBlt),
    FAILS(PatBlt),
    FAILS(GdiTransparentBlt),
    FAILS(AlphaBlend),
    FAILS(SaveDC),
    FAILS(RestoreDC),
    FAILS(SetMapMode),
    FAILS(SetWindowExtEx),
    FAILS(SetWindowOrgEx),
    FAILS(SetViewportExtEx),
    FAILS(SetViewportOrgEx),
    FAILS(GetWindowExtEx),
    FAILS(GetViewportExtEx),
    FAILS(LPtoDP),
    FAILS(DPtoLP),
    FAILS(GetClipBox),
    FAILS(IntersectClipRect),
    FAILS(ExcludeClipRect),
    FAILS(GetRgnBox),
    FAILS(CombineRgn),
    FAILS(SelectClipRgn),
    FAILS(Polyline),
    FAILS(MoveToEx),
    FAILS(LineTo),
    FAILS(Rectangle),
    FAILS(Ellipse),
    FAILS(Arc),
    FAILS(SetROP2),
    FAILS(SetBkMode),
    FAILS(SetStretchBltMode),
    FAILS_WITH(SetTextColor, -1),
    FAILS_WITH(SetBkColor, -1),
    FAILS_WITH(SetDCPenColor, -1),
    FAILS_WITH(SetDCBrushColor, -1),
    FAILS_WITH(GetGlyphIndicesW, -1),
    FAILS(GetMapMode),
    FAILS(GetWindowOrgEx),
    FAILS(GetViewportOrgEx),
    FAILS(SetBrushOrgEx),
    FAILS(SetRectRgn),
    FAILS(TranslateCharsetInfo),
    FAILS(GetTextMetricsW),
    FAILS(ExtTextOutW),
    FAILS(DrawTextA),
    FAILS(DrawTextW),
    FAILS(DrawEdge),
    FAILS(DrawFrameControl),
    FAILS(DrawFocusRect),
    FAILS(FillRect),
    FAILS(FrameRect),
    // Windows.
    FAILS(RegisterClassA),
    FAILS(CreateDialogParamW),
    FAILS(CreateDialogParamA),
    FAILS_WITH(DialogBoxParamW, -1),
    FAILS(CreateWindowExW),
    FAILS(CreateCaret),
    FAILS(SetCaretPos),
    FAILS(SetPropA),
    FAILS(SetPropW),
    FAILS(GetPropA),
    FAILS(GetPropW),
    FAILS_WITH(EnumPropsA, -1),
    FAILS(SetTimer),
    FAILS(PostMessageA),
    FAILS(SetWindowPos),
    FAILS(MapWindowPoints),
    FAILS(ClientToScreen),
    FAILS(ScreenToClient),
    FAILS(InternalGetWindowText),
    FAILS(MessageBoxW),
    FAILS(ChooseColorA),
    FAILS(ChooseFontA),
    FAILS(GetClientRect),
    FAILS(GetWindowRect),
    FAILS(GetCursorPos),
    FAILS(GetDlgItem),
    FAILS(SetScrollRange),
    FAILS(SetScrollPos),
    FAILS(GetScrollPos),
#ifdef _WIN64
    FAILS(SetWindowLongPtrA),
    FAILS(SetWindowLongPtrW),
    FAILS(SetClassLongPtrA),
#else
    FAILS(SetWindowLongA),
    FAILS(SetWindowLongW),
    FAILS(SetClassLongA),
#endif
    FAILS(InvalidateRect),
    FAILS(RedrawWindow),
    FAILS(UpdateWindow),
    FAILS(GetUpdateRgn),
    ROW(SetWindowRgn, 0, true, GIVES_SECOND, GRAPHICS_OBJECTS),
    FAILS(GetWindowTextW),
    FAILS(SetWindowTextW),
    FAILS(SystemParametersInfoW),
    FAILS(TrackMouseEvent),
    FAILS(CheckRadioButton),
    FAILS(CheckDlgButton),
};

static void writeSlot(void** slot, void* value)
{
    DWORD protection;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    *slot = value;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
}

struct StandIn {
    const char* name;
    void* function;
};
static std::vector<StandIn> standIns;

static void* standInFor(const char* name, void* original)
{
    for (const StandIn& standIn : standIns)
        if (strcmp(standIn.name, name) == 0) return standIn.function;
    return original;
}

static void replaceImport(const char* name, void** slot)
{
    const int function = fallibleNamed(name);
    if (function >= 0 && *slot == table[function]->stub) return;
    void* const original = standInFor(name, *slot);
    if (function >= 0) table[function]->original = original;
    writeSlot(slot, function >= 0 ? table[function]->stub : original);
}

void replaceImports(HMODULE module)
{
    BYTE* base = (BYTE*)module;
    const IMAGE_NT_HEADERS* headers = (const IMAGE_NT_HEADERS*)(base + ((const IMAGE_DOS_HEADER*)base)->e_lfanew);
    const IMAGE_DATA_DIRECTORY imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const IMAGE_IMPORT_DESCRIPTOR* library = (const IMAGE_IMPORT_DESCRIPTOR*)(base + imports.VirtualAddress);
    for (; library->Name; ++library) {
        const IMAGE_THUNK_DATA* name = (const IMAGE_THUNK_DATA*)(base + library->OriginalFirstThunk);
        IMAGE_THUNK_DATA* slot = (IMAGE_THUNK_DATA*)(base + library->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++slot)
            if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
                replaceImport((const char*)((const IMAGE_IMPORT_BY_NAME*)(base + name->u1.AddressOfData))->Name,
                              (void**)&slot->u1.Function);
    }
}

void standIn(const char* name, void* function)
{
    standIns.push_back({name, function});
}

int fallibleCount()
{
    return (int)(sizeof table / sizeof table[0]);
}

const char* fallibleName(int function)
{
    return table[function]->name;
}

int fallibleNamed(const char* name)
{
    for (int i = 0; i < fallibleCount(); ++i)
        if (strcmp(table[i]->name, name) == 0) return i;
    return -1;
}

unsigned callsOf(int function)
{
    return table[function]->mayFail ? callsCounted(function) : 0;
}
