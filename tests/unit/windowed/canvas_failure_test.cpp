// A canvas whose calls fail once: it makes up for that at the next occasion, and shows nothing wrong for long.
#include "canvas/canvas.h"
#include "canvas/overview_map.h"
#include "canvas/pan.h"
#include "canvas/pointer_input.h"
#include "canvas/view_change.h"
#include "image/bitmap_locks.h"
#include "session/ground/session_extras.h"
#include "session/host_dialog.h"
#include "tests/session/import_patch.h"
#include "tests/unit/windowed/client_screen.h"
#include "tests/unit/windowed/session_fixture.h"

static HRGN WINAPI noRegion(int, int, int, int)
{
    return nullptr;
}

static HDC WINAPI noContext(HWND)
{
    return nullptr;
}

static UINT_PTR WINAPI noTimer(HWND, UINT_PTR, UINT, TIMERPROC)
{
    return 0;
}

static int WINAPI noText(HWND, LPWSTR, int)
{
    return 0;
}

static ImportPatch patch;

static LPVOID WINAPI noLockOfMap(HGLOBAL block)
{
    if (block && block == sessionExtras.canvas.map.thumbnail) return nullptr;
    return ((LPVOID(WINAPI*)(HGLOBAL))patch.before)(block);
}

struct CanvasFailure : SessionFixture {
    Dice dice = {31};

    void SetUp() override { ASSERT_TRUE(open(randomPicture(dice, 300, 200), {150, 100}, true)); }

    template <class Act>
    void with(const char* import, void* replacement, Act act)
    {
        ASSERT_TRUE(patchImport(&patch, GetModuleHandleA(nullptr), import, replacement));
        act();
        undoPatch(&patch);
    }

    void resize(int width, int height)
    {
        SetWindowPos(host, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
        SetWindowPos(session->canvasWindow, nullptr, 0, 0, width, height, SWP_NOZORDER);
    }

    std::vector<uint32_t> repainted()
    {
        InvalidateRect(session->canvasWindow, nullptr, FALSE);
        UpdateWindow(session->canvasWindow);
        return clientScreen(session->canvasWindow);
    }

    void showFull() { showView(session->canvasWindow, fullSizeView(sessionExtras.canvas.view)); }
};

TEST_F(CanvasFailure, WhatIsInvalidIsPaintedWithoutAnUpdateRegion)
{
    {
        const LockedPixels pixels(image);
        memset(rowOf(pixels.view, 50), 0, 300 * 3);
    }
    InvalidateRect(session->canvasWindow, nullptr, FALSE);
    with("CreateRectRgn", (void*)noRegion, [] { UpdateWindow(session->canvasWindow); });
    EXPECT_TRUE(showsWhatARepaintShows(session->canvasWindow));
}

TEST_F(CanvasFailure, AMappingThatFailedIsSetBeforeThePainting)
{
    resize(120, 80);
    const std::vector<uint32_t> expected = repainted();
    resize(150, 100);
    with("GetDC", (void*)noContext, [this] { resize(120, 80); });
    EXPECT_EQ(expected, repainted());
}

TEST_F(CanvasFailure, ATimerAtTheBorderIsAskedForAgain)
{
    showFull();
    session->currentTool = TOOL_SELECTION;
    pressButton(session->canvasWindow, {100, 100});
    movePointer(session->canvasWindow, {120, 110}, true);
    with("SetTimer", (void*)noTimer, [] { watchBorder(session->canvasWindow, {1, 40}); });
    watchBorder(session->canvasWindow, {1, 41});
    EXPECT_TRUE(KillTimer(session->canvasWindow, BORDER_TIMER));
    releaseButton(session->canvasWindow, {120, 110});
}

TEST_F(CanvasFailure, ATitleThatCannotBeReadStays)
{
    SetWindowTextA(host, "photo");
    with("GetWindowTextW", (void*)noText, [this] { showFull(); });
    showView(session->canvasWindow, fittedView(sessionExtras.canvas.view));
    char title[16] = "";
    GetWindowTextA(host, title, sizeof title);
    EXPECT_STREQ("photo", title);
}

TEST_F(CanvasFailure, AMapThatCouldNotBeFilledIsMadeAgain)
{
    showFull();
    const std::vector<uint32_t> expected = repainted();
    freeOverviewMap();
    with("GlobalLock", (void*)noLockOfMap, [this] { repainted(); });
    EXPECT_EQ(expected, repainted());
}

TEST_F(CanvasFailure, ADialogWithoutACanvasIsBlackAndLeavesOtherWindowsAlone)
{
    const HDC screen = GetDC(nullptr), dc = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, 8, 8);
    ReleaseDC(nullptr, screen);
    const HGDIOBJ before = SelectObject(dc, bitmap);
    SetPixel(dc, 3, 3, RGB(1, 200, 1));
    const HWND canvas = session->canvasWindow;
    repainted();
    session->canvasWindow = nullptr;
    EXPECT_NE(0, hostDialogProc(host, WM_ERASEBKGND, (WPARAM)dc, 0));
    session->canvasWindow = canvas;
    EXPECT_EQ((COLORREF)0, GetPixel(dc, 3, 3));
    EXPECT_FALSE(GetUpdateRect(canvas, nullptr, FALSE));
    SelectObject(dc, before);
    DeleteObject(bitmap);
    DeleteDC(dc);
}
