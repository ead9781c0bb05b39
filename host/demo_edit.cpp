// retouch_demo.exe: plays a short edit with the real pointer in a session that another program has open:
// chooses Brush, makes it larger, paints a wave, presses Save. Used by the script `retouch` where nobody
// sits before the screen.
//
// Wherever a picture of the screen is wanted it prints a line "picture NAME" and waits for a line on
// standard input. With two arguments it does one thing in the editor of one photo, for scripts that check:
//     retouch_demo save|spot|paint|dab|close|wait PHOTO    PHOTO: the file's name without its folder
//     retouch_demo answer yes|no|cancel                in the dialog that the program asks with
// save presses Save, spot first lays one dab into the photo's middle, paint lays it and leaves the editor open, dab
// lays one somewhere with the tool that is chosen, close leaves without saving, wait only waits until the editor is
// open. Exit code: 0 done, 1 no session found, 2 it could not be done, 3 usage.
#include <cmath>
#include <cstdio>
#include <string>
#include <windows.h>

constexpr int BRUSH_BUTTON = 117;
constexpr int SAVE_BUTTON = 8;
constexpr int WIDTH_BAR = 202;

struct DemoEditor {
    HWND dialog, canvas, palette;
    DWORD process;  // whose editor is wanted; 0: anyone's
};

static DWORD processOf(HWND window)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process;
}

static BOOL CALLBACK findParts(HWND window, LPARAM parameter)
{
    DemoEditor* editor = (DemoEditor*)parameter;
    if (!IsWindowVisible(window) || (editor->process && processOf(window) != editor->process)) return TRUE;
    if (HWND canvas = FindWindowExW(window, nullptr, L"KOVRETOUCH", nullptr)) {
        editor->dialog = window;
        editor->canvas = canvas;
    } else if (GetDlgItem(window, BRUSH_BUTTON) && GetDlgItem(window, SAVE_BUTTON)) {
        editor->palette = window;
    }
    return TRUE;
}

static bool editorIsOpen(DemoEditor* editor)
{
    *editor = {nullptr, nullptr, nullptr, editor->process};
    EnumWindows(findParts, (LPARAM)editor);
    return editor->canvas && editor->palette;
}

template <typename Condition>
static bool waitUntil(Condition holds, DWORD milliseconds)
{
    const DWORD start = GetTickCount();
    while (!holds()) {
        if (GetTickCount() - start > milliseconds) return false;
        Sleep(20);
    }
    return true;
}

static bool answers(const DemoEditor& editor)
{
    DWORD_PTR answer;
    return SendMessageTimeoutW(editor.canvas, WM_NULL, 0, 0, SMTO_NORMAL, 5000, &answer);
}

// Returns when the editor has worked off its input, has nothing left to paint, and has given what it painted to
// the display: that happens when it waits for the next message, so it must have come to wait once after that.
static void settle(const DemoEditor& editor)
{
    waitUntil(
        [&] {
            return !answers(editor) ||
                   (!GetUpdateRect(editor.canvas, nullptr, FALSE) && !GetUpdateRect(editor.palette, nullptr, FALSE));
        },
        10000);
    for (int turn = 0; turn < 2; ++turn)
        answers(editor);
}

static void picture(const DemoEditor& editor, const char* name)
{
    settle(editor);
    Sleep(200);  // the display's own way to the screen
    printf("picture %s\n", name);
    fflush(stdout);
    char line[16];
    if (!fgets(line, sizeof line, stdin)) return;
}

// A button goes down or up at the point, in one event with the way there: a late report of where the pointer was
// before cannot come between.
static void pointer(POINT point, DWORD buttons)
{
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | buttons;
    const int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    input.mi.dx = (LONG)(((long long)point.x * 65536 + width - 1) / width);
    input.mi.dy = (LONG)(((long long)point.y * 65536 + height - 1) / height);
    SendInput(1, &input, sizeof input);
}

// Returns when the pointer is there, for the display too.
static void moveTo(POINT point)
{
    waitUntil(
        [&] {
            POINT now;
            if (GetCursorPos(&now) && now.x == point.x && now.y == point.y) return true;
            SetCursorPos(point.x, point.y);
            pointer(point, 0);
            return false;
        },
        10000);
}

// A point of a window: across and down in parts of its size.
static POINT pointOf(HWND window, double across, double down)
{
    RECT box;
    GetWindowRect(window, &box);
    return {box.left + (LONG)((box.right - box.left) * across), box.top + (LONG)((box.bottom - box.top) * down)};
}

// Whether the pointer would meet the window there. Without a window manager a dialog can be left under the window
// that owns it; then it is brought up again.
static bool liesOnTop(HWND window, POINT point)
{
    if (!IsWindowEnabled(window)) return false;
    if (WindowFromPoint(point) == window) return true;
    SetWindowPos(GetAncestor(window, GA_ROOT), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return false;
}

// False when something else stays where the window should be.
static bool click(HWND window, double across, double down)
{
    if (!waitUntil([&] { return liesOnTop(window, pointOf(window, across, down)); }, 10000)) return false;
    const POINT point = pointOf(window, across, down);
    moveTo(point);
    pointer(point, MOUSEEVENTF_LEFTDOWN);
    pointer(point, MOUSEEVENTF_LEFTUP);
    return true;
}

static POINT wavePoint(HWND canvas, double part)
{
    return pointOf(canvas, 0.15 + 0.7 * part, 0.45 + 0.15 * std::sin(part * 4 * 3.14159265358979));
}

static void paintWave(const DemoEditor& editor)
{
    const int steps = 120;
    moveTo(wavePoint(editor.canvas, 0));
    settle(editor);
    pointer(wavePoint(editor.canvas, 0), MOUSEEVENTF_LEFTDOWN);
    for (int step = 1; step <= steps; ++step) {
        moveTo(wavePoint(editor.canvas, (double)step / steps));
        Sleep(10);
        if (step == steps / 2) picture(editor, "painting");
    }
    settle(editor);
    pointer(wavePoint(editor.canvas, 1), MOUSEEVENTF_LEFTUP);
}

static int endOf(const DemoEditor& editor)
{
    return waitUntil([&] { return !IsWindow(editor.dialog); }, 60000) ? 0 : 2;
}

// On a busy machine a click may come before a window is ready for it; then it is made once more.
static int pressSave(const DemoEditor& editor)
{
    for (int attempt = 0; attempt < 5; ++attempt) {
        settle(editor);
        click(GetDlgItem(editor.palette, SAVE_BUTTON), 0.5, 0.5);
        if (waitUntil([&] { return !IsWindow(editor.dialog); }, 15000)) return 0;
    }
    return endOf(editor);
}

static int playEdit()
{
    DemoEditor editor = {};
    if (!waitUntil([&] { return editorIsOpen(&editor); }, 60000)) return 1;
    picture(editor, "opened");

    click(GetDlgItem(editor.palette, BRUSH_BUTTON), 0.5, 0.5);
    for (int i = 0; i < 6; ++i)
        click(GetDlgItem(editor.palette, WIDTH_BAR), 0.75, 0.5);
    picture(editor, "brush-chosen");

    paintWave(editor);
    picture(editor, "painted");
    return pressSave(editor);
}

// What the screen shows around a point.
static COLORREF seenAt(POINT point)
{
    HDC screen = GetDC(nullptr);
    const COLORREF color = GetPixel(screen, point.x, point.y);
    ReleaseDC(nullptr, screen);
    return color;
}

// To a place where nothing reacts, below the palette: no outline lies at the pointer.
static void restPointer(const DemoEditor& editor)
{
    POINT point = pointOf(editor.palette, 0.5, 1);
    point.y += 12;
    moveTo(point);
    settle(editor);
}

// False when no dab is seen in the photo's middle.
static bool laySpot(const DemoEditor& editor)
{
    const POINT middle = pointOf(editor.canvas, 0.5, 0.5);
    restPointer(editor);
    const COLORREF before = seenAt(middle);
    for (int attempt = 0; attempt < 5; ++attempt) {
        click(GetDlgItem(editor.palette, BRUSH_BUTTON), 0.5, 0.5);
        settle(editor);
        click(editor.canvas, 0.5, 0.5);
        restPointer(editor);
        if (waitUntil([&] { return seenAt(middle) != before; }, 5000)) return true;
    }
    return false;
}

static int laySomewhere(const DemoEditor& editor)
{
    const DWORD now = GetTickCount();
    return click(editor.canvas, 0.1 + now % 809 / 1011.0, 0.1 + now % 907 / 1133.0) ? 0 : 2;
}

static int closeEditor(const DemoEditor& editor)
{
    PostMessageW(editor.dialog, WM_CLOSE, 0, 0);
    return endOf(editor);
}

static BOOL CALLBACK findDialog(HWND window, LPARAM parameter)
{
    wchar_t name[16] = L"";
    GetClassNameW(window, name, 16);
    if (!IsWindowVisible(window) || std::wstring(name) != L"#32770" || GetDlgItem(window, SAVE_BUTTON)) return TRUE;
    *(HWND*)parameter = window;
    return FALSE;
}

static HWND openDialog()
{
    HWND dialog = nullptr;
    EnumWindows(findDialog, (LPARAM)&dialog);
    return dialog && GetDlgItem(dialog, IDCANCEL) ? dialog : nullptr;
}

static int answerDialog(const std::wstring& answer)
{
    HWND dialog = nullptr;
    if (!waitUntil([&] { return (dialog = openDialog()) != nullptr; }, 60000)) return 1;
    const int button = answer == L"yes" ? IDYES : answer == L"no" ? IDNO : IDCANCEL;
    for (int attempt = 0; attempt < 5; ++attempt) {
        click(GetDlgItem(dialog, button), 0.5, 0.5);
        if (waitUntil([&] { return !IsWindow(dialog); }, 15000)) return 0;
    }
    return 2;
}

static int doOneThing(const std::wstring& action, const std::wstring& photo)
{
    if (action == L"answer") return answerDialog(photo);
    const std::wstring title = photo + L" - Retouch";
    DemoEditor editor = {};
    const bool open = waitUntil(
        [&] {
            HWND host = FindWindowW(L"RetouchHost", title.c_str());
            editor.process = host ? processOf(host) : 0;
            return host && editorIsOpen(&editor);
        },
        60000);
    if (!open) return 1;
    if ((action == L"spot" || action == L"paint") && !laySpot(editor)) return 2;
    if (action == L"spot" || action == L"save") return pressSave(editor);
    if (action == L"dab") return laySomewhere(editor);
    if (action == L"close") return closeEditor(editor);
    return action == L"wait" || action == L"paint" ? 0 : 3;
}

int wmain(int count, wchar_t** words)
{
    if (count == 3) return doOneThing(words[1], words[2]);
    return count == 1 ? playEdit() : 3;
}
