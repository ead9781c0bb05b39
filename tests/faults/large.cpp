// Sessions over images of extreme sizes: every tool, undo, a selection of many points through every operation, text and
// colour, while memory is plenty and while it is not.
//
//     large WIDTHxHEIGHT [LEFT]
//
// With LEFT, only so many MiB of address space are left once the session is open: what does not fit is skipped, and the
// session goes on. Prints what is found and "LARGE n findings" at the end.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "selection/geometry/frame_layout.h"
#include "tests/faults/fault_counts.h"
#include "tests/faults/fault_host.h"
#include "tests/session/control_ids.h"
#include "tests/session/host_image.h"

static FaultHost host;
static HostImage photo;
static unsigned findings;

static uint32_t sumOfImage()
{
    const uint8_t* const bytes = (const uint8_t*)GlobalLock(photo.block);
    const SIZE_T size = GlobalSize(photo.block);
    uint32_t sum = 2166136261u;
    for (SIZE_T i = 0; bytes && i < size; ++i)
        sum = (sum ^ bytes[i]) * 16777619u;
    GlobalUnlock(photo.block);
    return sum;
}

static void found(const char* what)
{
    ++findings;
    printf("FOUND %s\n", what);
    fflush(stdout);
}

static void paintWithEveryTool()
{
    for (const int tool : {ID_BRUSH, ID_SOFT, ID_RUBBER, ID_AEROGRAPHE, ID_STAMP, ID_SMOOTH, ID_SPOONBILL}) {
        clickTool(&host, tool);
        drag(&host, {{30, 40}, {80, 60}, {150, 50}, {239, 120}, {200, 170}});
        drag(&host, {{5, 5}, {239, 179}});
        for (const int command : {ID_UNDO, ID_UNDO, ID_REDO})
            clickTool(&host, command);
    }
}

// Up and down over all rows, ten times; to and fro on the way, so that the points become many.
static std::vector<POINT> manyPoints()
{
    std::vector<POINT> points;
    for (int column = 0; column < 10; ++column)
        for (int step = 0; step < 180; ++step)
            points.push_back({10 + column * 22 + (step & 1 ? 3 : 0), column & 1 ? 179 - step : step});
    return points;
}

static void changeSelection()
{
    // Where the frame lies depends on the size; a press beside it clears the selection, and the next draws another.
    for (int y = 2; y < PHOTO_HEIGHT; y += 16)
        drag(&host, {{4, y}, {12, y + 8}});
    drag(&host, {{120, 90}, {140, 100}, {90, 80}});
}

static void selectMuch()
{
    clickTool(&host, ID_SELECTION);
    drag(&host, manyPoints());
    changeSelection();
    drag(&host, manyPoints());
    clickTool(&host, ID_BRUSH);
    clickTool(&host, ID_UNDO);
    clickTool(&host, ID_SELECTION);
    drag(&host, {{70, 60}, {170, 62}, {168, 130}, {72, 128}});
    drag(&host, {{110, 90}, {130, 100}, {90, 80}});
    for (int x = 62; x < 190; x += 8)
        drag(&host, {{x, 52}, {x + 6, 58}});  // along the frame's buttons
}

static void writeText()
{
    clickTool(&host, ID_TEXT);
    drag(&host, {{30, 30}});
    type(&host, "Retouch\r");
    clickTool(&host, ID_UNDO);
}

static void adjust()
{
    clickTool(&host, ID_CONTRAST);
    if (!waitForWindow(&host, &FaultHost::contrast, true)) return;
    for (const int bar : {101, 102, 103, 104})
        click(&host, GetDlgItem(host.contrast, bar));
    click(&host, GetDlgItem(host.contrast, IDCANCEL));
    waitForWindow(&host, &FaultHost::contrast, false);
}

// Takes address space until hardly more than this is left, the largest pieces first.
static std::vector<void*> leaveOnly(SIZE_T bytes)
{
    std::vector<void*> taken;
    void* const spared = VirtualAlloc(nullptr, bytes, MEM_RESERVE, PAGE_NOACCESS);
    for (SIZE_T size = (SIZE_T)256 << 20; size >= (SIZE_T)1 << 20; size /= 2)
        while (void* const piece = VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_NOACCESS))
            taken.push_back(piece);
    if (spared) VirtualFree(spared, 0, MEM_RELEASE);
    return taken;
}

int main(int count, char** words)
{
    const int width = count > 1 ? atoi(words[1]) : 0;
    const char* const by = count > 1 ? strchr(words[1], 'x') : nullptr;
    const int height = by ? atoi(by + 1) : 0;
    if (width < 1 || height < 1) return 2;
    startFaultHost(&host);
    photo = makePhoto(width, height, 7);
    if (!photo.block) return found("no memory for the image"), 1;
    host.image = photo.block;
    const uint32_t before = sumOfImage();
    std::vector<void*> taken;
    if (!openSession(&host)) found("the session does not open");
    if (count > 2) taken = leaveOnly((SIZE_T)atoi(words[2]) << 20);
    void (*const deeds[])() = {paintWithEveryTool, selectMuch, writeText, adjust};
    for (void (*const deed)() : deeds) {
        deed();
        if (!host.running) found("the session has ended");
    }
    const bool edited = sumOfImage() != before;
    // A brush over both sides of an image starts at its first row, which is empty: on a single row it paints nothing.
    if (!edited && taken.empty() && height > 1) found("nothing was painted");
    leaveSession(&host, 2);
    for (void* piece : taken)
        VirtualFree(piece, 0, MEM_RELEASE);
    if (host.running) found("the session does not end");
    if (host.result != 0 || sumOfImage() != before) found("Close does not give the image back");
    if (host.windowsLeft || host.classLeft || host.disabledLeft) found("something stays behind");
    for (int kind = 0; kind < KIND_COUNT; ++kind)
        if (outstanding(kind)) printf("FOUND left: %ld %s\n", outstanding(kind), kindName(kind)), ++findings;
    printf("LARGE %dx%d%s%s %u findings\n", width, height, taken.empty() ? "" : ", memory short",
           edited ? "," : ", not edited,", findings);
    return findings ? 1 : 0;
}
