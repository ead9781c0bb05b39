// retouch_demo.exe: plays a short edit with the real pointer in a session that another program has open:
// chooses Brush, makes it larger, paints a wave, presses Save. Used by the script `retouch` where nobody
// sits before the screen.
//
// Wherever a picture of the screen is wanted it prints a line "picture NAME" and waits for a line on
// standard input. With two arguments it does one thing in the editor of one photo, for scripts that check:
//     retouch_demo save|spot|close|wait PHOTO    PHOTO: the file's name without its folder
// save presses Save, spot first lays one dab into the photo's middle, close leaves without saving, wait only
// waits until the editor is open. Exit code: 0 done, 1 no session found, 2 the session did not end, 3 usage.
#include <cmath>
#include <cstdio>
#include <string>
#include <windows.h>

namespace {

const int brushButton = 117;
const int saveButton = 8;
const int widthBar = 202;

struct Editor {
    HWND dialog, canvas, palette;
    DWORD process;  // whose editor is wanted; 0: anyone's
};

DWORD processOf(HWND window)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process;
}

BOOL CALLBACK findParts(HWND window, LPARAM parameter)
{
    Editor* editor = (Editor*)parameter;
    if (!IsWindowVisible(window) || (editor->process && processOf(window) != editor->process)) return TRUE;
    if (HWND canvas = FindWindowExW(window, nullptr, L"KOVRETOUCH", nullptr)) {
        editor->dialog = window;
        editor->canvas = canvas;
    } else if (GetDlgItem(window, brushButton) && GetDlgItem(window, saveButton)) {
        editor->palette = window;
    }
    return TRUE;
}

bool editorIsOpen(Editor* editor)
{
    *editor = {nullptr, nullptr, nullptr, editor->process};
    EnumWindows(findParts, (LPARAM)editor);
    return editor->canvas && editor->palette;
}

template <typename Condition>
bool waitUntil(Condition holds, DWORD milliseconds)
{
    const DWORD start = GetTickCount();
    while (!holds()) {
        if (GetTickCount() - start > milliseconds) return false;
        Sleep(20);
    }
    return true;
}

// Returns when the editor has worked off its input and has nothing left to paint.
void settle(const Editor& editor)
{
    waitUntil(
        [&] {
            DWORD_PTR answer;
            return !SendMessageTimeoutW(editor.canvas, WM_NULL, 0, 0, SMTO_NORMAL, 5000, &answer) ||
                   (!GetUpdateRect(editor.canvas, nullptr, FALSE) && !GetUpdateRect(editor.palette, nullptr, FALSE));
        },
        10000);
    Sleep(200);  // the display's own way to the screen
}

void picture(const Editor& editor, const char* name)
{
    settle(editor);
    printf("picture %s\n", name);
    fflush(stdout);
    char line[16];
    if (!fgets(line, sizeof line, stdin)) return;
}

void button(DWORD flag)
{
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flag;
    SendInput(1, &input, sizeof input);
}

void moveTo(POINT point)
{
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    const int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    input.mi.dx = (LONG)(((long long)point.x * 65536 + width / 2) / width);
    input.mi.dy = (LONG)(((long long)point.y * 65536 + height / 2) / height);
    SetCursorPos(point.x, point.y);
    SendInput(1, &input, sizeof input);
}

// A point of a window: across and down in parts of its size.
POINT pointOf(HWND window, double across, double down)
{
    RECT box;
    GetWindowRect(window, &box);
    return {box.left + (LONG)((box.right - box.left) * across), box.top + (LONG)((box.bottom - box.top) * down)};
}

void click(HWND window, double across, double down)
{
    moveTo(pointOf(window, across, down));
    Sleep(60);
    button(MOUSEEVENTF_LEFTDOWN);
    Sleep(60);
    button(MOUSEEVENTF_LEFTUP);
    Sleep(60);
}

POINT wavePoint(HWND canvas, double part)
{
    return pointOf(canvas, 0.15 + 0.7 * part, 0.45 + 0.15 * std::sin(part * 4 * 3.14159265358979));
}

void paintWave(const Editor& editor)
{
    const int steps = 120;
    moveTo(wavePoint(editor.canvas, 0));
    settle(editor);
    button(MOUSEEVENTF_LEFTDOWN);
    for (int step = 1; step <= steps; step++) {
        moveTo(wavePoint(editor.canvas, (double)step / steps));
        Sleep(10);
        if (step == steps / 2) picture(editor, "painting");
    }
    settle(editor);
    button(MOUSEEVENTF_LEFTUP);
}

int endOf(const Editor& editor)
{
    return waitUntil([&] { return !IsWindow(editor.dialog); }, 60000) ? 0 : 2;
}

int pressSave(const Editor& editor)
{
    settle(editor);
    click(GetDlgItem(editor.palette, saveButton), 0.5, 0.5);
    return endOf(editor);
}

int playEdit()
{
    Editor editor = {};
    if (!waitUntil([&] { return editorIsOpen(&editor); }, 60000)) return 1;
    picture(editor, "opened");

    click(GetDlgItem(editor.palette, brushButton), 0.5, 0.5);
    for (int i = 0; i < 6; i++)
        click(GetDlgItem(editor.palette, widthBar), 0.75, 0.5);
    picture(editor, "brush-chosen");

    paintWave(editor);
    picture(editor, "painted");
    return pressSave(editor);
}

void laySpot(const Editor& editor)
{
    settle(editor);
    click(GetDlgItem(editor.palette, brushButton), 0.5, 0.5);
    settle(editor);
    click(editor.canvas, 0.5, 0.5);
}

int closeEditor(const Editor& editor)
{
    PostMessageW(editor.dialog, WM_CLOSE, 0, 0);
    return endOf(editor);
}

int doOneThing(const std::wstring& action, const std::wstring& photo)
{
    const std::wstring title = photo + L" - Retouch";
    Editor editor = {};
    const bool open = waitUntil(
        [&] {
            HWND host = FindWindowW(L"RetouchHost", title.c_str());
            editor.process = host ? processOf(host) : 0;
            return host && editorIsOpen(&editor);
        },
        60000);
    if (!open) return 1;
    if (action == L"spot") laySpot(editor);
    if (action == L"spot" || action == L"save") return pressSave(editor);
    if (action == L"close") return closeEditor(editor);
    return action == L"wait" ? 0 : 3;
}

}  // namespace

int wmain(int count, wchar_t** words)
{
    if (count == 3) return doOneThing(words[1], words[2]);
    return count == 1 ? playEdit() : 3;
}
