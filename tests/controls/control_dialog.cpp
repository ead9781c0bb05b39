#include "control_dialog.h"

#include <cstring>

#include "tests/session/pointer_guard.h"

static const testing::Environment* const guardedPointer = testing::AddGlobalTestEnvironment(new GuardedPointer);

DialogLog dialogLog;

const ControlLibrary& controlLibrary()
{
    static ControlLibrary library = {};
    if (library.module) return library;
    library.module = LoadLibraryW(L"KOVCTRL32.dll");
    const auto take = [](auto& function, WORD ordinal) {
        const FARPROC address = GetProcAddress(library.module, MAKEINTRESOURCEA(ordinal));
        static_assert(sizeof function == sizeof address, "");
        memcpy(&function, &address, sizeof function);
    };
    take(library.setButtonPicture, 6);
    take(library.displayMode, 56);
    take(library.paintDialogBackground, 220);
    take(library.releaseDialog, 221);
    take(library.dragBitmap, 242);
    take(library.nameControl, 300);
    take(library.showBarValue, 301);
    return library;
}

// The template's parts, each on its own boundary.
static void putWord(std::vector<BYTE>& to, WORD value)
{
    to.push_back((BYTE)value);
    to.push_back((BYTE)(value >> 8));
}

static void putLong(std::vector<BYTE>& to, DWORD value)
{
    putWord(to, LOWORD(value));
    putWord(to, HIWORD(value));
}

static void putText(std::vector<BYTE>& to, const wchar_t* text)
{
    do
        putWord(to, *text);
    while (*text++);
}

static std::vector<BYTE> dialogTemplate(const std::vector<ControlSpec>& controls, bool visible)
{
    std::vector<BYTE> made;
    putLong(made, WS_POPUP | WS_CAPTION | DS_SETFONT | (visible ? WS_VISIBLE : 0));
    putLong(made, 0);
    putWord(made, (WORD)controls.size());
    for (WORD value : {200, 150, 180, 100})
        putWord(made, value);
    putWord(made, 0);
    putWord(made, 0);
    putText(made, L"Controls");
    putWord(made, 8);
    putText(made, L"Helv");
    for (const ControlSpec& control : controls) {
        while (made.size() % 4)
            made.push_back(0);
        putLong(made, control.style | WS_CHILD | WS_VISIBLE);
        putLong(made, 0);
        for (short value : {control.x, control.y, control.width, control.height})
            putWord(made, (WORD)value);
        putWord(made, control.id);
        putText(made, control.className);
        putText(made, control.text);
        putWord(made, 0);
    }
    return made;
}

static INT_PTR CALLBACK dialogProc(HWND dialog, UINT message, WPARAM wp, LPARAM lp)
{
    if (dialogLog.handler)
        if (const INT_PTR result = dialogLog.handler(dialog, message, wp, lp)) return result;
    switch (message) {
    case WM_INITDIALOG: return FALSE;  // the focus stays where the test puts it
    case WM_ERASEBKGND: return controlLibrary().paintDialogBackground(dialog, (HDC)wp, 0x42);
    case WM_COMMAND:
        if (HIWORD(wp) == BN_CLICKED) dialogLog.clicks.push_back(LOWORD(wp));
        return TRUE;
    case WM_DESTROY: controlLibrary().releaseDialog(dialog); return TRUE;
    }
    return FALSE;
}

HWND openDialog(const std::vector<ControlSpec>& controls, bool visible)
{
    controlLibrary();
    dialogLog = {};
    const std::vector<BYTE> made = dialogTemplate(controls, visible);
    return CreateDialogIndirectParamA(GetModuleHandleA(nullptr), (const DLGTEMPLATE*)made.data(), nullptr, dialogProc,
                                      0);
}

void closeDialog(HWND dialog)
{
    if (IsWindow(dialog)) DestroyWindow(dialog);
    dialogLog = {};
}

static void dispatchAll(HWND dialog)
{
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (IsDialogMessageW(dialog, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

bool waitFor(HWND dialog, const std::function<bool()>& condition)
{
    const DWORD start = GetTickCount();
    for (;;) {
        dispatchAll(dialog);
        if (condition()) return true;
        if (GetTickCount() - start > WAIT_LIMIT_MS) return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
}

bool activate(HWND dialog)
{
    SetForegroundWindow(dialog);
    return waitFor(dialog, [&] { return GetForegroundWindow() == dialog && !GetQueueStatus(QS_PAINT | QS_INPUT); });
}

void movePointer(POINT screen)
{
    SetCursorPos(screen.x, screen.y);
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    input.mi.dx = MulDiv(screen.x, 65536, GetSystemMetrics(SM_CXSCREEN)) + 1;
    input.mi.dy = MulDiv(screen.y, 65536, GetSystemMetrics(SM_CYSCREEN)) + 1;
    SendInput(1, &input, sizeof input);
}

static void sendButton(DWORD flags)
{
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    SendInput(1, &input, sizeof input);
}

void pressLeft()
{
    sendButton(MOUSEEVENTF_LEFTDOWN);
}

void releaseLeft()
{
    sendButton(MOUSEEVENTF_LEFTUP);
}

void typeKey(WORD key)
{
    INPUT inputs[2] = {};
    for (INPUT& input : inputs) {
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key;
        input.ki.wScan = (WORD)MapVirtualKeyW(key, MAPVK_VK_TO_VSC);
    }
    inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(2, inputs, sizeof *inputs);
}

POINT middleOf(HWND window)
{
    RECT rect;
    GetWindowRect(window, &rect);
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

void clickControl(HWND dialog, int id)
{
    const POINT at = middleOf(GetDlgItem(dialog, id));
    movePointer(at);
    waitFor(dialog, [&] {
        POINT now;
        return GetCursorPos(&now) && now.x == at.x && now.y == at.y;
    });
    pressLeft();
    releaseLeft();
}

int Picture::count(uint32_t colour) const
{
    int found = 0;
    for (uint32_t pixel : pixels)
        found += pixel == colour;
    return found;
}

static Picture drawnBy(HWND control, const std::function<void(HDC, const RECT&)>& draw)
{
    RECT client;
    GetClientRect(control, &client);
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = client.right;
    info.bmiHeader.biHeight = -client.bottom;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HDC memory = CreateCompatibleDC(nullptr);
    HGDIOBJ before = SelectObject(memory, bitmap);
    draw(memory, client);
    GdiFlush();
    Picture picture = {(int)client.right, (int)client.bottom, {}};
    const uint32_t* pixels = (const uint32_t*)bits;
    for (LONG i = 0; i < client.right * client.bottom; ++i)
        picture.pixels.push_back(pixels[i] & 0x00FFFFFF);
    SelectObject(memory, before);
    DeleteDC(memory);
    DeleteObject(bitmap);
    return picture;
}

Picture printed(HWND control)
{
    return drawnBy(control,
                   [&](HDC dc, const RECT&) { SendMessageW(control, WM_PRINTCLIENT, (WPARAM)dc, PRF_CLIENT); });
}

Picture onScreen(HWND control)
{
    return drawnBy(control, [&](HDC dc, const RECT& client) {
        HDC window = GetWindowDC(control);  // no borders: the same as the client area
        BitBlt(dc, 0, 0, client.right, client.bottom, window, 0, 0, SRCCOPY);
        ReleaseDC(control, window);
    });
}

uint32_t systemPixel(int index)
{
    const COLORREF colour = GetSysColor(index);
    return (uint32_t)GetRValue(colour) << 16 | (uint32_t)GetGValue(colour) << 8 | GetBValue(colour);
}

HBITMAP solidBitmap(int width, int height, uint32_t colour, int frame)
{
    HDC screen = GetDC(nullptr);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    HDC memory = CreateCompatibleDC(screen);
    HGDIOBJ before = SelectObject(memory, bitmap);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const bool inFrame = x < frame || y < frame || x >= width - frame || y >= height - frame;
            const uint32_t p = inFrame ? 0xC0C0C0 : colour;
            SetPixelV(memory, x, y, RGB(p >> 16 & 255, p >> 8 & 255, p & 255));
        }
    SelectObject(memory, before);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return bitmap;
}
