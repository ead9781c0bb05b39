#include "library/library_dialog.h"

#include <initializer_list>

#include "canvas/view/canvas_press.h"
#include "controls/kovctrl32.h"
#include "library/library_list.h"
#include "library/library_store.h"
#include "resources/resource_ids.h"
#include "session/dialogs/button_pictures.h"
#include "session/dialogs/dialog_face.h"
#include "session/ground/language.h"
#include "session/ground/module_state.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"

constexpr WCHAR LIBRARY_TEMPLATE[] = L"ENDLGRTCH_SELLISTFILES";  // the English one
constexpr int PROP_PARAMETER = 1;
constexpr int CONFIRMATION_SIZE = 128;

static HWND listOf(HWND dialog)
{
    return GetDlgItem(dialog, LIST_SELECTIONS);
}

static RECT listRect(HWND dialog)
{
    RECT rect = {};
    GetWindowRect(listOf(dialog), &rect);
    MapWindowPoints(nullptr, dialog, (POINT*)&rect, 2);
    return rect;
}

static void stretchList(HWND dialog)
{
    RECT client;
    if (!GetClientRect(dialog, &client)) return;
    const RECT rect = listRect(dialog);
    SetWindowPos(listOf(dialog), nullptr, rect.left, rect.top, client.right - rect.left, client.bottom - rect.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

static INT_PTR onInitDialog(HWND dialog, WPARAM, LPARAM lParam)
{
    setWindowProp(dialog, PROP_PARAMETER, (HANDLE)lParam);
    attachPicturesUnlessLibraryDoes(dialog, PICTURE_TABLE_LIBRARY, moduleInstance);
    const HWND list = listOf(dialog);
    stretchList(dialog);  // the template's units and the frame's pixels leave a gap at some sizes
    setLibraryItemHeight(list);
    fillLibraryList(list);
    subclassLibraryList(list);
    SetFocus(list);
    return FALSE;  // the focus is set
}

// Both sides of the border together. The window itself is asked: systems with padded borders make them wider than
// the metrics of a frame say.
static LONG borderWidth(HWND dialog)
{
    RECT window = {}, client = {};
    GetWindowRect(dialog, &window);
    GetClientRect(dialog, &client);
    return window.right - window.left - client.right;
}

// Resizable in height only.
static INT_PTR onGetMinMaxInfo(HWND dialog, WPARAM, LPARAM lParam)
{
    if (!listOf(dialog)) return 0;
    MINMAXINFO& info = *(MINMAXINFO*)lParam;
    info.ptMinTrackSize.x = info.ptMaxTrackSize.x = listRect(dialog).right + borderWidth(dialog);
    return 0;
}

static INT_PTR onSize(HWND dialog, WPARAM, LPARAM)
{
    if (listOf(dialog)) stretchList(dialog);
    return 0;
}

static INT_PTR onDialogColour(HWND, WPARAM, LPARAM)
{
    return (INT_PTR)GetSysColorBrush(COLOR_BTNFACE);
}

static INT_PTR onDrawItem(HWND, WPARAM, LPARAM lParam)
{
    drawLibraryItem(*(const DRAWITEMSTRUCT*)lParam);
    return TRUE;
}

static INT_PTR onDeleteItem(HWND, WPARAM, LPARAM lParam)
{
    freeLibraryItem(((const DELETEITEMSTRUCT*)lParam)->itemData);
    return TRUE;
}

static int confirmDelete(HWND dialog)
{
    WCHAR question[CONFIRMATION_SIZE] = L"";
    loadLocalString(moduleInstance, STRING_CONFIRM_DELETE, question, CONFIRMATION_SIZE);
    return MessageBoxW(dialog, question, L"", MB_YESNO | MB_ICONHAND | MB_DEFBUTTON2) == IDYES;
}

static void closeLibrary(HWND)
{
    showLibraryDialog(0, session->hostDialog);
    CheckDlgButton(session->paletteDialog, BUTTON_LIBRARY, BST_UNCHECKED);
}

static void saveToLibrary(HWND dialog)
{
    LibraryPath saved;
    if (saveSelectionToLibrary(&saved)) addLibraryItem(listOf(dialog), saved.text);
}

static void deleteFromLibrary(HWND dialog)
{
    const HWND list = listOf(dialog);
    const WCHAR* const current = currentLibraryPath(list);
    if (!current) return;
    LibraryPath path;
    lstrcpynW(path.text, current, MODULE_PATH_SIZE);
    // While the question is open the list may change, and the session may end.
    if (!confirmDelete(dialog)) return;
    deleteLibraryFile(path.text);
    if (IsWindow(list)) removeLibraryItem(list, path.text);
}

struct LibraryCommand {
    int id;
    void (*run)(HWND dialog);
};

static const LibraryCommand commands[] = {
    {BUTTON_CLOSE, closeLibrary},
    {BUTTON_SAVE, saveToLibrary},
    {BUTTON_DELETE, deleteFromLibrary},
};

static INT_PTR onCommand(HWND dialog, WPARAM wParam, LPARAM)
{
    endCanvasPress();
    for (const LibraryCommand& command : commands) {
        if (command.id == LOWORD(wParam)) {
            command.run(dialog);
            break;
        }
    }
    return TRUE;
}

static INT_PTR onDestroy(HWND dialog, WPARAM, LPARAM)
{
    unsubclassLibraryList(listOf(dialog));
    releaseDialog(dialog);
    removeAllProps(dialog);
    return TRUE;
}

static const DialogRoute routes[] = {
    {WM_INITDIALOG, onInitDialog},
    {WM_GETMINMAXINFO, onGetMinMaxInfo},
    {WM_SIZE, onSize},
    {WM_CTLCOLORDLG, onDialogColour},
    {WM_ERASEBKGND, paintFaceBackground},
    {WM_DRAWITEM, onDrawItem},
    {WM_DELETEITEM, onDeleteItem},
    {WM_COMMAND, onCommand},
    {WM_DESTROY, onDestroy},
};

static INT_PTR CALLBACK libraryDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    return session ? dispatchDialogMessage(routes, dialog, message, wParam, lParam) : FALSE;
}

// Beside the palette, on the side where it leaves the middle of the photo free; where it was if there is none.
static void placeBesidePalette(HWND dialog)
{
    RECT own = {}, palette, photo = {};
    GetWindowRect(dialog, &own);
    GetWindowRect(session->hostDialog, &photo);
    if (!GetWindowRect(session->paletteDialog, &palette)) return;
    const POINT middle = {(photo.left + photo.right) / 2, (photo.top + photo.bottom) / 2};
    const int width = own.right - own.left, height = own.bottom - own.top;
    for (const LONG left : {palette.right, palette.left - width}) {
        const RECT place = {left, palette.top, left + width, palette.top + height};
        if (left < 0 || place.right > GetSystemMetrics(SM_CXSCREEN) || PtInRect(&place, middle)) continue;
        SetWindowPos(dialog, nullptr, left, palette.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        return;
    }
}

static void openLibrary(HWND owner)
{
    if (!IsWindow(session->libraryDialog)) {
        session->libraryDialog = openLocalDialog(moduleInstance, LIBRARY_TEMPLATE, owner, libraryDialogProc, 0);
        if (session->libraryDialog) placeBesidePalette(session->libraryDialog);
    }
    if (!session->libraryDialog) return;
    ShowWindow(session->libraryDialog, SW_SHOW);
    BringWindowToTop(session->libraryDialog);
}

void showLibraryDialog(int show, HWND owner)
{
    if (show) return openLibrary(owner);
    if (IsWindow(session->libraryDialog)) DestroyWindow(session->libraryDialog);
    session->libraryDialog = nullptr;
}
