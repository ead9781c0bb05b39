#include "host/host_window.h"

#include "host/guide.h"
#include "host/host_face.h"
#include "host/texts.h"
#include "host/waiting_photos.h"

#include <commctrl.h>

constexpr wchar_t WINDOW_CLASS[] = L"RetouchHost";
constexpr int BAR_STEPS = 1000;

static HWND window, bar;
static HACCEL keys;
static HostFace face;
static Progress* current;
static bool stoppable, leaving;
static HostCommand chosen;

static void repaint()
{
    InvalidateRect(window, nullptr, TRUE);
}

static void layOut()
{
    RECT client;
    GetClientRect(window, &client);
    const RECT place = placeOfBar(face, client);
    SetWindowPos(bar, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE | (current ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
    repaint();
}

static void enableCommands()
{
    HMENU menu = GetMenu(window);
    const UINT state = current ? MF_GRAYED : MF_ENABLED;
    EnableMenuItem(menu, COMMAND_OPEN, state);
    EnableMenuItem(menu, COMMAND_SAVE_AS, face.picture ? state : MF_GRAYED);
}

static LRESULT onClose(WPARAM, LPARAM)
{
    // While a photo is being retouched, the editor's own ways out are the ways out.
    if (!IsWindowEnabled(window)) return 0;
    if (!current)
        leaving = true;
    else if (stoppable)
        current->stop = true;
    return 0;
}

static LRESULT onCommand(WPARAM wide, LPARAM)
{
    const HostCommand command = (HostCommand)LOWORD(wide);
    if (command == COMMAND_GUIDE)
        openGuide(window);
    else if (command == COMMAND_ABOUT)
        showAbout(window);
    else if (command == COMMAND_EXIT)
        PostMessageW(window, WM_CLOSE, 0, 0);
    else if (!current && IsWindowEnabled(window) && (command != COMMAND_SAVE_AS || face.picture))
        chosen = command;
    return 0;
}

static LRESULT onDropFiles(WPARAM wide, LPARAM)
{
    addDropped((HDROP)wide);
    repaint();
    return 0;
}

static LRESULT onPaint(WPARAM, LPARAM)
{
    RECT client;
    GetClientRect(window, &client);
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    face.waiting = anyWaiting() ? caption(TEXT_WAITING, namesOfWaiting()) : L"";
    paintFace(face, dc, client);
    EndPaint(window, &paint);
    return 0;
}

static LRESULT onSize(WPARAM, LPARAM)
{
    layOut();
    return 0;
}

static LRESULT onSettingChange(WPARAM, LPARAM)
{
    renewFonts(&face);
    layOut();
    return 0;
}

struct Handler {
    UINT message;
    LRESULT (*handle)(WPARAM, LPARAM);
};
static const Handler handlers[] = {
    {WM_CLOSE, onClose}, {WM_COMMAND, onCommand}, {WM_DROPFILES, onDropFiles},
    {WM_PAINT, onPaint}, {WM_SIZE, onSize},       {WM_SETTINGCHANGE, onSettingChange},
};

static LRESULT CALLBACK hostWindowProc(HWND to, UINT message, WPARAM wide, LPARAM parameter)
{
    for (const Handler& handler : handlers)
        if (window && handler.message == message) return handler.handle(wide, parameter);
    return DefWindowProcW(to, message, wide, parameter);
}

static void registerWindowClass()
{
    WNDCLASSW description = {};
    description.style = CS_HREDRAW | CS_VREDRAW;
    description.lpfnWndProc = hostWindowProc;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hIcon = LoadIconW(description.hInstance, MAKEINTRESOURCEW(1));
    description.hCursor = LoadCursorW(nullptr, (LPCWSTR)IDC_ARROW);
    description.hbrBackground = (HBRUSH)(COLOR_APPWORKSPACE + 1);
    description.lpszClassName = WINDOW_CLASS;
    RegisterClassW(&description);
}

bool openHostWindow()
{
    registerWindowClass();
    RECT area;
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    HMENU menu = createHostMenu();
    HWND made = CreateWindowExW(WS_EX_ACCEPTFILES, WINDOW_CLASS, L"Retouch", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                                area.left, area.top, area.right - area.left, area.bottom - area.top, nullptr, menu,
                                GetModuleHandleW(nullptr), nullptr);
    if (!made) {
        DestroyMenu(menu);
        return false;
    }
    const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    bar = CreateWindowExW(0, PROGRESS_CLASSW, L"", WS_CHILD, 0, 0, 0, 0, made, nullptr, nullptr, nullptr);
    SendMessageW(bar, PBM_SETRANGE32, 0, BAR_STEPS);
    keys = createHostKeys();
    renewFonts(&face);
    window = made;
    enableCommands();
    layOut();
    return true;
}

void closeHostWindow()
{
    HWND gone = window;
    window = nullptr;
    if (gone) DestroyWindow(gone);
    DestroyAcceleratorTable(keys);
    releaseFonts(&face);
}

void forsakeHostWindow()
{
    HWND forsaken = window;
    window = nullptr;
    ShowWindowAsync(forsaken, SW_HIDE);
}

HWND hostWindow()
{
    return window;
}

void showHostWindow()
{
    if (!window || IsWindowVisible(window)) return;
    ShowWindow(window, SW_SHOW);
    UpdateWindow(window);
}

void showTitle(const std::wstring& photo)
{
    SetWindowTextW(window, photo.empty() ? L"Retouch" : (photo + L" - Retouch").c_str());
}

void showHint()
{
    face.panel = caption(TEXT_HINT);
    layOut();
}

void showStatus(const std::wstring& line)
{
    face.status = line;
    repaint();
}

void showPicture(HGLOBAL picture)
{
    face.picture = picture;
    face.panel.clear();
    enableCommands();
    layOut();
}

RECT roomForEditor()
{
    RECT client;
    GetClientRect(window, &client);
    RECT room = roomAboveStatus(face, client);
    MapWindowPoints(window, nullptr, (POINT*)&room, 2);
    return room;
}

void beginProgress(const std::wstring& what, Progress* progress, bool mayStop)
{
    current = progress;
    stoppable = mayStop;
    face.panel = what;
    face.bar = true;
    SendMessageW(bar, PBM_SETPOS, 0, 0);
    enableCommands();
    layOut();
    UpdateWindow(window);
}

void moveProgress()
{
    const int all = current->allRows, done = current->rows;
    if (all > 0) SendMessageW(bar, PBM_SETPOS, (WPARAM)MulDiv(BAR_STEPS, done < all ? done : all, all), 0);
}

void endProgress()
{
    current = nullptr;
    face.panel.clear();
    face.bar = false;
    enableCommands();
    layOut();
}

bool serveMessage()
{
    MSG message;
    if (leaving || GetMessageW(&message, nullptr, 0, 0) <= 0) return false;
    if (!TranslateAcceleratorW(window, keys, &message)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return !leaving;
}

HostCommand takeCommand()
{
    const HostCommand command = chosen;
    chosen = COMMAND_NONE;
    return command;
}
