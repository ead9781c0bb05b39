#include "tests/faults/fault_sessions.h"

#include "selection/geometry/frame_layout.h"
#include "tests/session/control_ids.h"

static const std::vector<POINT> stroke = {{30, 40}, {80, 60}, {150, 50}, {239, 120}, {200, 170}};

static void strokeUndoRedo(FaultHost* host)
{
    drag(host, stroke);
    drag(host, {{5, 5}, {100, 100}});
    clickTool(host, ID_UNDO);
    clickTool(host, ID_UNDO);
    clickTool(host, ID_REDO);
    drag(host, {{120, 20}, {20, 120}});
}

static void playBrush(FaultHost* host)
{
    clickTool(host, ID_BRUSH);
    strokeUndoRedo(host);
}

static void playSoftBrush(FaultHost* host)
{
    clickTool(host, ID_BRUSH);
    clickTool(host, ID_SOFT);
    strokeUndoRedo(host);
}

static void playRubber(FaultHost* host)
{
    clickTool(host, ID_BRUSH);
    drag(host, stroke);
    clickTool(host, ID_RUBBER);
    strokeUndoRedo(host);
}

static void playSmooth(FaultHost* host)
{
    clickTool(host, ID_SMOOTH);
    strokeUndoRedo(host);
}

static void playAerographe(FaultHost* host)
{
    clickTool(host, ID_AEROGRAPHE);
    strokeUndoRedo(host);
}

static void playStamp(FaultHost* host)
{
    clickTool(host, ID_STAMP);
    for (const POINT at : {POINT{40, 40}, POINT{100, 90}, POINT{5, 5}, POINT{238, 178}})
        drag(host, {at});
    clickTool(host, ID_UNDO);
    clickTool(host, ID_UNDO);
    clickTool(host, ID_REDO);
}

static void playSpoonbill(FaultHost* host)
{
    clickTool(host, ID_SPOONBILL);
    strokeUndoRedo(host);
}

static void playColors(FaultHost* host)
{
    clickTool(host, ID_BRUSH);
    clickTool(host, ID_COLORS);
    drag(host, {{40, 40}, {60, 60}, {300, 300}});
    clickTool(host, ID_BRUSH);
    drag(host, stroke);
}

static void playText(FaultHost* host)
{
    clickTool(host, ID_TEXT);
    drag(host, {{30, 30}});
    type(host, "Retouch");
    PostMessageA(host->canvas, WM_KEYDOWN, VK_LEFT, 1);
    type(host, "\b.\r");
    type(host, "ab");
    drag(host, {{100, 100}});
    type(host, "thrown away");
    type(host, "\x1b");
    clickTool(host, ID_UNDO);
    clickTool(host, ID_BRUSH);
}

static void playContrast(FaultHost* host)
{
    clickTool(host, ID_BRUSH);
    drag(host, stroke);
    clickTool(host, ID_CONTRAST);
    if (!waitForWindow(host, &FaultHost::contrast, true)) return;
    for (const int bar : {101, 102, 103, 104})
        click(host, GetDlgItem(host->contrast, bar));
    click(host, GetDlgItem(host->contrast, IDOK));
    waitForWindow(host, &FaultHost::contrast, false);
    drag(host, {{10, 100}, {60, 140}});
}

static const PixelRect drawn = {70, 60, 171, 131};  // of the outline below

static void drawSelection(FaultHost* host)
{
    clickTool(host, ID_SELECTION);
    drag(host, {{70, 60}, {120, 75}, {170, 62}, {150, 95}, {168, 130}, {110, 112}, {72, 128}, {84, 90}});
}

// The frame as it lies around the selection at first; where a fault has changed it, the press goes beside.
static POINT middleOf(FrameButton button)
{
    const int frame = GetSystemMetrics(SM_CXFRAME);
    const PixelRect outer = frameOuterRectOf(drawn, {frame, frame});
    const PixelRect rect = layOutFrameButtons(outer, {2 * frame, 2 * frame}).rects[button];
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

static void playMove(FaultHost* host)
{
    drawSelection(host);
    drag(host, {{110, 90}, {130, 100}, {90, 80}});
    drag(host, {{90, 80}, {110, 90}});
    drag(host, {middleOf(FRAME_BUTTON_APPLY)});
    clickTool(host, ID_UNDO);
    clickTool(host, ID_REDO);
}

static void playOperations(FaultHost* host)
{
    drawSelection(host);
    for (const FrameButton button :
         {FRAME_BUTTON_FLIP_HORIZONTAL, FRAME_BUTTON_FLIP_VERTICAL, FRAME_BUTTON_DARKER, FRAME_BUTTON_BRIGHTER,
          FRAME_BUTTON_HUE_UP, FRAME_BUTTON_SATURATION_MORE, FRAME_BUTTON_CONTRAST_LESS, FRAME_BUTTON_LIFT_UP})
        drag(host, {middleOf(button)});
    const POINT grip = middleOf(FRAME_BUTTON_ROTATE), corner = middleOf(FRAME_HANDLE_BOTTOM_RIGHT);
    drag(host, {grip, {grip.x + 20, grip.y + 30}, {grip.x + 30, grip.y + 50}});
    drag(host, {corner, {corner.x + 10, corner.y + 8}, {corner.x + 20, corner.y + 16}});
    drag(host, {middleOf(FRAME_BUTTON_CLOSE)});
    drawSelection(host);
    drag(host, {middleOf(FRAME_BUTTON_CLOSE)});
}

static void playLibrary(FaultHost* host)
{
    drawSelection(host);
    clickTool(host, ID_LIBRARY);
    if (!waitForWindow(host, &FaultHost::shelf, true)) return;
    click(host, GetDlgItem(host->shelf, ID_LIBRARY_SAVE));
    RECT list = {};
    GetWindowRect(GetDlgItem(host->shelf, ID_LIBRARY_LIST), &list);
    movePointer(host, GetDlgItem(host->shelf, ID_LIBRARY_LIST), {list.left + 30, list.top + 25});
    press(host);
    movePointer(host, host->canvas, onScreen(*host, 100, 90));
    movePointer(host, host->canvas, onScreen(*host, 120, 100));
    release(host);
    findWindows(host);
    if (!host->shelf) return;
    SendMessageA(GetDlgItem(host->shelf, ID_LIBRARY_LIST), LB_SETCURSEL, 1, 0);
    click(host, GetDlgItem(host->shelf, ID_LIBRARY_DELETE));
    if (waitForWindow(host, &FaultHost::question, true)) click(host, GetDlgItem(host->question, IDYES));
    waitForWindow(host, &FaultHost::question, false);
}

static void playSettings(FaultHost* host)
{
    clickTool(host, ID_BRUSH);
    for (const int id : {ID_WIDTH, ID_LOCK, ID_WIDTH, ID_OPACITY, ID_RECTANGLE, ID_SOFT})
        clickTool(host, id);
    drag(host, stroke);
    RECT box = {};
    GetWindowRect(host->dialog, &box);
    SetWindowPos(host->dialog, nullptr, 0, 0, box.right - box.left + 60, box.bottom - box.top,
                 SWP_NOMOVE | SWP_NOZORDER);
    settle(host);
    drag(host, {{50, 120}, {150, 20}});
}

const FaultSession faultSessions[] = {
    {"brush", playBrush, 2, false, nullptr},
    {"soft brush", playSoftBrush, 2, false, nullptr},
    {"rubber", playRubber, 2, false, nullptr},
    {"smooth", playSmooth, 2, false, nullptr},
    {"aerographe", playAerographe, 2, false, nullptr},
    {"stamp", playStamp, 2, false, nullptr},
    {"spoonbill", playSpoonbill, 2, false, nullptr},
    {"colors", playColors, 2, false, "T117"},
    {"text", playText, 2, false, nullptr},
    {"contrast", playContrast, 2, true, nullptr},
    {"move", playMove, 2, false, nullptr},
    {"operations", playOperations, 2, false, nullptr},
    {"library", playLibrary, 2, false, nullptr},
    {"settings", playSettings, 8, false, "T117"},
};
const int faultSessionCount = (int)(sizeof faultSessions / sizeof faultSessions[0]);
