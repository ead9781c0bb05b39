#include "canvas/zoom_title.h"

#include <windows.h>

#include <cstdlib>
#include <cwchar>

#include "canvas/view/canvas_coordinates.h"
#include "image/pixels/scarce_memory.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

constexpr int SUFFIX_LENGTH = 24;

static wchar_t*& nameOfWindow = sessionExtras.canvas.nameOfWindow;

static void keepName()
{
    const int length = GetWindowTextLengthW(session->hostDialog);
    nameOfWindow = (wchar_t*)takeZeroedMemory((size_t)length + 1, sizeof *nameOfWindow);
    if (!nameOfWindow || length == 0 || GetWindowTextW(session->hostDialog, nameOfWindow, length + 1) > 0) return;
    forgetTitle();  // better no number in the title than no name
}

static void showPercent(int percent)
{
    if (!nameOfWindow) keepName();
    if (!nameOfWindow) return;
    const size_t room = wcslen(nameOfWindow) + SUFFIX_LENGTH;
    wchar_t* const title = (wchar_t*)takeZeroedMemory(room, sizeof *title);
    if (!title) return;
    wchar_t suffix[SUFFIX_LENGTH];
    wsprintfW(suffix, *nameOfWindow ? L" - %d %%" : L"%d %%", percent);
    wcscpy(title, nameOfWindow);
    wcscat(title, suffix);
    SetWindowTextW(session->hostDialog, title);
    free(title);
}

void showZoomInTitle()
{
    if (isZoomed(sessionExtras.canvas.view)) return showPercent(viewPercent(sessionExtras.canvas.view));
    if (!nameOfWindow) return;
    SetWindowTextW(session->hostDialog, nameOfWindow);
    forgetTitle();
}

void forgetTitle()
{
    free(nameOfWindow);
    nameOfWindow = nullptr;
}
