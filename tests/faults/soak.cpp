// Long work in one process: strokes with undo, selections, contrast runs, whole sessions. What is in use afterwards is
// what was in use before.
//
//     soak [--strokes N] [--selections N] [--contrast N] [--sessions N] [--plant 1]
//
// Prints a line "START", "MIDDLE" or "END" for each part's measurements, "TIME" for each tenth of it, "FOUND ..." for
// each thing that grew, and "SOAK n findings" at the end. --plant 1 leaks on purpose in every tenth session, to see
// that it is found.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "selection/geometry/frame_layout.h"
#include "tests/faults/fault_counts.h"
#include "tests/faults/fault_host.h"
#include "tests/faults/posted_pointer.h"
#include "tests/session/control_ids.h"
#include "tests/session/host_image.h"

static FaultHost host;
static HostImage photo;
static std::vector<uint8_t> original;
static unsigned findings;
static bool plant;

// ---- measuring

struct InUse {
    long booked[KIND_COUNT];
    int memoryHandles, graphicsHandles;  // how many more can be made
    int windows;
    SIZE_T privateBytes;
};

template <class Handle, class Make, class Release>
static int countFree(Make make, Release release)
{
    std::vector<Handle> made;
    while (const Handle handle = make())
        made.push_back(handle);
    for (const Handle handle : made)
        release(handle);
    return (int)made.size();
}

static BOOL CALLBACK countWindow(HWND window, LPARAM count)
{
    DWORD process;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId()) ++*(int*)count;
    return TRUE;
}

// Committed and the process's own, whoever asked for it.
static SIZE_T ownMemory()
{
    SIZE_T bytes = 0;
    MEMORY_BASIC_INFORMATION part;
    for (const BYTE* at = nullptr; VirtualQuery(at, &part, sizeof part);
         at = (const BYTE*)part.BaseAddress + part.RegionSize)
        if (part.State == MEM_COMMIT && part.Type == MEM_PRIVATE) bytes += part.RegionSize;
    return bytes;
}

static InUse measure()
{
    InUse use = {};
    for (int kind = 0; kind < KIND_COUNT; ++kind)
        use.booked[kind] = outstanding(kind);
    use.memoryHandles = countFree<HGLOBAL>([] { return GlobalAlloc(GMEM_MOVEABLE, 0); }, GlobalFree);
    use.graphicsHandles = countFree<HBRUSH>([] { return CreateSolidBrush(1); }, DeleteObject);
    EnumWindows(countWindow, (LPARAM)&use.windows);
    use.privateBytes = ownMemory();
    return use;
}

static void print(const char* when, const char* part, const InUse& use)
{
    printf("%s %s: %.1f MiB, %d memory and %d graphics handles free, %d windows", when, part,
           (double)use.privateBytes / (1 << 20), use.memoryHandles, use.graphicsHandles, use.windows);
    for (int kind = 0; kind < KIND_COUNT; ++kind)
        printf(", %ld %s", use.booked[kind], kindName(kind));
    printf("\n");
    fflush(stdout);
}

static void found(const char* part, const std::string& what)
{
    ++findings;
    printf("FOUND %s: %s\n", part, what.c_str());
    fflush(stdout);
}

// The system keeps a few things of its own; what every tenth of 500 sessions leaves is more.
constexpr int SYSTEMS_OWN = 3, WARMING_UP = 20;
constexpr SIZE_T SYSTEMS_BYTES = 4 << 20;

static void compare(const char* part, const InUse& before, const InUse& after)
{
    for (int kind = 0; kind < KIND_COUNT; ++kind)
        if (after.booked[kind] > before.booked[kind])
            found(part, std::to_string(after.booked[kind] - before.booked[kind]) + " more " + kindName(kind));
    if (after.memoryHandles < before.memoryHandles - SYSTEMS_OWN) found(part, "memory handles are lost");
    if (after.graphicsHandles < before.graphicsHandles - SYSTEMS_OWN) found(part, "graphics handles are lost");
    if (after.windows > before.windows) found(part, "windows stay");
    if (after.privateBytes > before.privateBytes + SYSTEMS_BYTES) found(part, "the memory grew");
}

// ---- deeds, posted without a wait in between

static void postPoint(POINT client, int button)
{
    postMove(host.threadId, host.canvas, onScreen(host, client.x, client.y));
    if (button) postButton(host.threadId, LEFT_BUTTON, button > 0);
}

static void postDrag(const std::vector<POINT>& points)
{
    postPoint(points[0], 1);
    for (size_t i = 1; i < points.size(); ++i)
        postPoint(points[i], i + 1 == points.size() ? -1 : 0);
    if (points.size() == 1) postPoint(points[0], -1);
}

static void command(int id)
{
    PostMessageA(host.palette, WM_COMMAND, (WPARAM)id, 0);
}

static void strokeAndUndo(int number)
{
    static const int tools[] = {ID_BRUSH, ID_SOFT, ID_SMOOTH, ID_SPOONBILL};
    if (number % 5 == 0) command(tools[number / 5 % 4]);
    const int strokes = number % 5 + 1;
    for (int i = 0; i < strokes; ++i)
        postDrag({{(number * 37 + i * 11) % PHOTO_WIDTH, 40}, {80, (number * 53) % PHOTO_HEIGHT}, {150, 50 + i}});
    for (int i = 0; i < strokes; ++i)
        command(ID_UNDO);
    settle(&host);
}

static POINT middleOf(FrameButton button)
{
    const int frame = GetSystemMetrics(SM_CXFRAME);
    const PixelRect outer = frameOuterRectOf({70, 60, 171, 131}, {frame, frame});
    const PixelRect rect = layOutFrameButtons(outer, {2 * frame, 2 * frame}).rects[button];
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

static void selectAndChange(int number)
{
    command(ID_SELECTION);
    postDrag({{70, 60}, {120, 75}, {170, 62}, {150, 95}, {168, 130}, {110, 112}, {72, 128}, {84, 90}});
    settle(&host);
    const POINT grip = middleOf(FRAME_BUTTON_ROTATE), corner = middleOf(FRAME_HANDLE_BOTTOM_RIGHT);
    switch (number % 5) {
    case 0: postDrag({{110, 90}, {130, 100}, {90 + number % 30, 80}}); break;
    case 1: postDrag({corner, {corner.x + 10, corner.y + 8}, {corner.x + number % 40, corner.y + 16}}); break;
    case 2: postDrag({grip, {grip.x + 20, grip.y + 30}, {grip.x + number % 60, grip.y + 50}}); break;
    case 3: postDrag({middleOf(FRAME_BUTTON_HUE_UP)}); break;
    default: postDrag({middleOf(FRAME_BUTTON_APPLY)});
    }
    if (number % 3 == 0) postDrag({middleOf(FRAME_BUTTON_APPLY)});
    command(ID_BRUSH);  // clears it
    if (number % 3 == 0) command(ID_UNDO);
    settle(&host);
}

static void runContrast(int number)
{
    command(ID_CONTRAST);
    if (!waitForWindow(&host, &FaultHost::contrast, true)) return found("contrast", "the dialog does not open");
    for (const int bar : {101, 102, 103, 104}) {
        const HWND control = GetDlgItem(host.contrast, bar);
        PostMessageA(host.contrast, WM_VSCROLL, MAKEWPARAM(number & 1 ? SB_PAGEUP : SB_PAGEDOWN, 0), (LPARAM)control);
        PostMessageA(host.contrast, WM_VSCROLL, SB_ENDSCROLL, (LPARAM)control);
    }
    PostMessageA(host.contrast, WM_COMMAND, number & 2 ? IDOK : IDCANCEL, 0);
    waitForWindow(&host, &FaultHost::contrast, false);
}

static void restoreImage()
{
    memcpy(GlobalLock(photo.block), original.data(), original.size());
    GlobalUnlock(photo.block);
}

static void wholeSession(int number)
{
    restoreImage();
    if (!openSession(&host)) return found("sessions", "one does not open");
    command(number & 1 ? ID_BRUSH : ID_SMOOTH);
    for (int i = 0; i < 3; ++i)
        postDrag({{20 + i, 30}, {90, 70 + i}});
    command(number & 2 ? ID_TEXT : ID_SELECTION);  // left with a line of text, or with a selection
    postDrag({{100, 100}, {140, 100}, {140, 140}, {100, 140}});
    settle(&host);
    leaveSession(&host, number & 4 ? 8 : 2);
    if (host.running) found("sessions", "one does not end");
    if (plant && number % 10 == 0) {
        CreateSolidBrush(1);
        GlobalAlloc(GMEM_MOVEABLE, 16);
    }
}

// ---- the parts

static double milliseconds(const FILETIME& time)
{
    return ((double)time.dwHighDateTime * 4294967296.0 + time.dwLowDateTime) / 10000;
}

// This process alone: the same on a busy machine.
static double processorTime()
{
    FILETIME created, ended, kernel = {}, user = {};
    GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
    return milliseconds(kernel) + milliseconds(user);
}

struct Moment {
    DWORD clock;
    double processor;
};

static Moment now()
{
    return {GetTickCount(), processorTime()};
}

// Whether the last ones take longer than the first.
static void tellTime(const char* part, int done, const Moment& start, int deeds)
{
    printf("TIME %s: %d done, %.1f ms each, %.2f ms of the processor\n", part, done,
           (double)(GetTickCount() - start.clock) / deeds, (processorTime() - start.processor) / deeds);
    fflush(stdout);
}

// Deeds of one session: flat in its middle, and nothing left when it is over.
static void soakSession(const char* part, int count, void (*deed)(int number))
{
    if (count == 0) return;
    openSession(&host);
    for (int i = 0; i < WARMING_UP; ++i)  // what is made once
        deed(i);
    leaveSession(&host, 2);
    const InUse before = measure();
    print("START", part, before);
    restoreImage();
    if (!openSession(&host)) return found(part, "the session does not open");
    InUse early = {};
    const int tenth = count / 10 > 0 ? count / 10 : 1;
    for (int i = 0; i < count && host.running; ++i) {
        const Moment start = now();
        for (const int end = std::min(i + tenth, count) - 1; i < end; ++i)
            deed(i);
        deed(i);
        tellTime(part, i + 1, start, tenth);
        if (i < 2 * tenth - 1) print("MIDDLE", part, early = measure());
    }
    if (!host.running) found(part, "the session has ended");
    const InUse late = measure();
    print("MIDDLE", part, late);
    if (late.graphicsHandles < early.graphicsHandles - SYSTEMS_OWN) found(part, "graphics objects grow meanwhile");
    if (late.privateBytes > early.privateBytes + SYSTEMS_BYTES) found(part, "the memory grows meanwhile");
    leaveSession(&host, 2);
    const InUse after = measure();
    print("END", part, after);
    compare(part, before, after);
}

static void soakSessions(int count)
{
    if (count == 0) return;
    for (int i = 0; i < WARMING_UP; ++i)
        wholeSession(i + 1);
    const InUse before = measure();
    print("START", "sessions", before);
    for (int i = 0; i < count; ++i)
        wholeSession(i);
    const InUse after = measure();
    print("END", "sessions", after);
    compare("sessions", before, after);
}

int main(int count, char** words)
{
    int strokes = 100000, selections = 10000, contrast = 1000, sessions = 500;
    for (int i = 1; i + 1 < count; i += 2) {
        const std::string name = words[i];
        const int value = atoi(words[i + 1]);
        if (name == "--strokes") strokes = value;
        if (name == "--selections") selections = value;
        if (name == "--contrast") contrast = value;
        if (name == "--sessions") sessions = value;
        if (name == "--plant") plant = value != 0;
    }
    startFaultHost(&host);
    photo = makePhoto(PHOTO_WIDTH, PHOTO_HEIGHT, 7);
    host.image = photo.block;
    original = snapshot(photo);
    soakSession("strokes", strokes / 3, strokeAndUndo);  // three strokes at a time on average
    soakSession("selections", selections, selectAndChange);
    soakSession("contrast", contrast, runContrast);
    soakSessions(sessions);
    printf("SOAK %u findings\n", findings);
    return findings ? 1 : 0;
}
