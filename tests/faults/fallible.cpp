#include "tests/faults/fallible.h"

#include <commctrl.h>
#include <commdlg.h>

#include <cstdlib>
#include <cstring>
#include <type_traits>

// How a call changes the books.
enum Rule {
    NO_ENTRY,
    MAKES,           // +1 unless it fails
    RELEASES,        // -1 unless it fails
    RELEASES_FIRST,  // -1 when the first argument is not null and the answer is null
    FREES,           // -1 when the first argument is not null
    RESIZES,         // +1 when the first argument is null and the answer is not
    GIVES_SECOND,    // -1 unless it fails or the second argument is null: that is the system's now
};

struct Fallible {
    const char* name;
    intptr_t failure;  // what the function answers when it fails
    bool mayFail;
    Rule rule;
    Kind kind;
    void* stub;
    void** original;
    int emptied;  // argument that is a buffer for text, left empty by a failure; -1 for none
};

static const Fallible& entryOf(int function);

static unsigned calls[256];
static std::vector<Fault> armed;
static std::vector<bool> struck;
static long books[KIND_COUNT];
static DWORD watchedThread;

static bool watched()
{
    return GetCurrentThreadId() == watchedThread;
}

static bool failsNow(int function)
{
    if (!watched()) return false;
    const unsigned call = calls[function]++;
    bool fails = false;
    for (size_t i = 0; i < armed.size(); ++i) {
        const Fault& fault = armed[i];
        if (fault.function != function || call < fault.call || (call > fault.call && !fault.persistent)) continue;
        struck[i] = fails = true;
    }
    if (fails) SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return fails;
}

template <class T>
static intptr_t number(T value)
{
    if constexpr (std::is_pointer<T>::value)
        return reinterpret_cast<intptr_t>(value);
    else if constexpr (std::is_integral<T>::value)
        return (intptr_t)value;
    else
        return 1;
}

template <class R>
static R answer(intptr_t value)
{
    if constexpr (std::is_pointer<R>::value)
        return reinterpret_cast<R>(value);
    else
        return (R)value;
}

static int change(const Fallible& entry, const intptr_t* arguments, intptr_t result)
{
    switch (entry.rule) {
    case MAKES: return result != entry.failure;
    case RELEASES: return -(result != 0);
    case RELEASES_FIRST: return -(arguments[0] && !result);
    case FREES: return -(arguments[0] != 0);
    case RESIZES: return !arguments[0] && result;
    case GIVES_SECOND: return -(arguments[1] && result);
    case NO_ENTRY: break;
    }
    return 0;
}

static void book(int function, const intptr_t* arguments, intptr_t result)
{
    if (watched()) books[entryOf(function).kind] += change(entryOf(function), arguments, result);
}

// Wide enough for a character of either width.
static void emptyBuffer(const Fallible& entry, const intptr_t* arguments)
{
    if (entry.emptied >= 0 && arguments[entry.emptied]) memset((void*)arguments[entry.emptied], 0, sizeof(wchar_t));
}

template <int index, class R, class... A>
static R relay(R(WINAPI* original)(A...), A... a)
{
    const intptr_t arguments[] = {number(a)..., 0};
    if constexpr (std::is_void<R>::value) {
        original(a...);
        book(index, arguments, 0);
    } else {
        if (entryOf(index).mayFail && failsNow(index)) {
            emptyBuffer(entryOf(index), arguments);
            return answer<R>(entryOf(index).failure);
        }
        const R result = original(a...);
        const DWORD error = GetLastError();
        book(index, arguments, number(result));
        SetLastError(error);
        return result;
    }
}

template <int index, class F>
struct Stub;

template <int index, class R, class... A>
struct Stub<index, R(WINAPI*)(A...)> {
    static inline void* original;
    static R WINAPI call(A... a) { return relay<index, R, A...>((R(WINAPI*)(A...))original, a...); }
};

#ifndef _WIN64
template <int index, class R, class... A>
static R relayC(R(__cdecl* original)(A...), A... a)
{
    const intptr_t arguments[] = {number(a)..., 0};
    if constexpr (std::is_void<R>::value) {
        original(a...);
        book(index, arguments, 0);
    } else {
        if (failsNow(index)) return answer<R>(entryOf(index).failure);
        const R result = original(a...);
        book(index, arguments, number(result));
        return result;
    }
}

template <int index, class R, class... A>
struct Stub<index, R(__cdecl*)(A...)> {
    static inline void* original;
    static R __cdecl call(A... a) { return relayC<index, R, A...>((R(__cdecl*)(A...))original, a...); }
};
#endif

template <int index, class F>
static Fallible row(const char* name, intptr_t failure, bool mayFail, Rule rule = NO_ENTRY, Kind kind = MEMORY_BLOCKS,
                    int emptied = -1)
{
    return {name, failure, mayFail, rule, kind, (void*)&Stub<index, F>::call, &Stub<index, F>::original, emptied};
}

#define ROW(function, ...) row<__COUNTER__, decltype(&function)>(#function, __VA_ARGS__)
#define FAILS(function) ROW(function, 0, true)
#define FAILS_EMPTY(function, buffer) ROW(function, 0, true, NO_ENTRY, MEMORY_BLOCKS, buffer)
#define FAILS_WITH(function, failure) ROW(function, failure, true)

static const Fallible table[] = {
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

static const Fallible& entryOf(int function)
{
    return table[function];
}

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
    if (function >= 0 && *slot == table[function].stub) return;
    void* const original = standInFor(name, *slot);
    if (function >= 0) *table[function].original = original;
    writeSlot(slot, function >= 0 ? table[function].stub : original);
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

void watchThread(DWORD thread)
{
    watchedThread = thread;
}

int fallibleCount()
{
    return (int)(sizeof table / sizeof table[0]);
}

const char* fallibleName(int function)
{
    return table[function].name;
}

int fallibleNamed(const char* name)
{
    for (int i = 0; i < fallibleCount(); ++i)
        if (strcmp(table[i].name, name) == 0) return i;
    return -1;
}

void startCounting(const std::vector<Fault>& faults)
{
    memset(calls, 0, sizeof calls);
    armed = faults;
    struck.assign(faults.size(), false);
}

void disarm()
{
    armed.clear();
}

unsigned faultsStruck()
{
    unsigned count = 0;
    for (const bool hit : struck)
        count += hit;
    return count;
}

unsigned callsOf(int function)
{
    return table[function].mayFail ? calls[function] : 0;
}

const char* kindName(int kind)
{
    static const char* const names[KIND_COUNT] = {"memory blocks", "graphics objects", "device contexts", "heap blocks",
                                                  "files",         "searches"};
    return names[kind];
}

long outstanding(int kind)
{
    return books[kind];
}
