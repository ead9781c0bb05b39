#include "controls/tooltip.h"

#include <commctrl.h>
#include <wchar.h>

#include "controls/button_record.h"
#include "controls/caption.h"
#include "controls/kovctrl32.h"
#include "controls/named_control.h"

constexpr wchar_t PROPERTY_NAME[] = L"KovTooltip";

constexpr int TIP_LENGTH = 512, TIP_GAP = 3;

static HWND tooltipOf(HWND dialog)
{
    HWND tooltip = (HWND)GetPropW(dialog, PROPERTY_NAME);
    return IsWindow(tooltip) ? tooltip : nullptr;
}

static HWND createTooltip(HWND dialog)
{
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_BAR_CLASSES};
    if (!InitCommonControlsEx(&classes)) return nullptr;
    HWND tooltip = CreateWindowExW(WS_EX_TOPMOST | WS_EX_NOACTIVATE, TOOLTIPS_CLASSW, nullptr,
                                   WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                                   CW_USEDEFAULT, dialog, nullptr, nullptr, nullptr);
    if (tooltip && !SetPropW(dialog, PROPERTY_NAME, tooltip)) {
        DestroyWindow(tooltip);
        tooltip = nullptr;
    }
    return tooltip;
}

static TOOLINFOW entryOf(HWND button, wchar_t* text)
{
    TOOLINFOW entry = {};
    entry.cbSize = TTTOOLINFOW_V2_SIZE;  // also known to the common controls without a manifest
    entry.uFlags = TTF_IDISHWND;
    entry.hwnd = button;
    entry.uId = (UINT_PTR)button;
    entry.lpszText = text;
    return entry;
}

// Keys that do what a button does, by the button's id. Templates carry captions only.
static const struct {
    int id;
    const wchar_t* suffix;
} keysOfButtons[] = {{190, L" (Ctrl+Z)"}, {191, L" (Ctrl+Y)"}};

static void appendKeys(HWND button, wchar_t (&text)[TIP_LENGTH])
{
    for (const auto& keys : keysOfButtons) {
        const bool fits = wcslen(text) + wcslen(keys.suffix) < TIP_LENGTH;
        if (GetDlgCtrlID(button) == keys.id && *text && fits) wcscat(text, keys.suffix);
    }
}

static void readTip(HWND button, wchar_t (&text)[TIP_LENGTH])
{
    text[0] = 0;
    if (const wchar_t* name = nameOfControl(button)) {
        lstrcpynW(text, name, TIP_LENGTH);
    } else if (buttonOf(button)->pictures[PICTURE_NORMAL]) {
        GetWindowTextW(button, text, TIP_LENGTH);
        shownText(text);
        removeAccessKeys(text);
        appendKeys(button, text);
    }
}

static bool hasEntry(HWND tooltip, HWND button)
{
    TOOLINFOW entry = entryOf(button, nullptr);
    return SendMessageW(tooltip, TTM_GETTOOLINFOW, 0, (LPARAM)&entry) != 0;
}

static bool addEntry(HWND tooltip, HWND button)
{
    wchar_t text[TIP_LENGTH];
    readTip(button, text);
    if (!*text) return false;
    TOOLINFOW entry = entryOf(button, text);
    return SendMessageW(tooltip, TTM_ADDTOOLW, 0, (LPARAM)&entry) != 0;
}

static void relay(HWND tooltip, HWND window, UINT message, WPARAM wp, LPARAM lp)
{
    MSG relayed = {window, message, wp, lp, (DWORD)GetMessageTime(), {(SHORT)LOWORD(lp), (SHORT)HIWORD(lp)}};
    ClientToScreen(window, &relayed.pt);
    SendMessageW(tooltip, TTM_RELAYEVENT, 0, (LPARAM)&relayed);
}

void relayToTooltip(HWND button, UINT message, WPARAM wp, LPARAM lp)
{
    HWND dialog = GetAncestor(button, GA_PARENT);
    HWND tooltip = tooltipOf(dialog);
    if (!tooltip) tooltip = createTooltip(dialog);
    if (!tooltip || (!hasEntry(tooltip, button) && !addEntry(tooltip, button))) return;
    relay(tooltip, button, message, wp, lp);
}

static bool entrySays(HWND tooltip, HWND window, const wchar_t* wanted)
{
    wchar_t text[TIP_LENGTH] = L"";
    TOOLINFOW entry = entryOf(window, text);
    SendMessageW(tooltip, TTM_GETTEXTW, TIP_LENGTH, (LPARAM)&entry);
    return wcscmp(text, wanted) == 0;
}

// Another text is another entry: the one before disappears, and the delay begins anew.
static void replaceEntry(HWND tooltip, HWND window, const wchar_t* text)
{
    TOOLINFOW entry = entryOf(window, nullptr);
    SendMessageW(tooltip, TTM_DELTOOLW, 0, (LPARAM)&entry);
    if (!text) return;
    entry = entryOf(window, (wchar_t*)text);
    SendMessageW(tooltip, TTM_ADDTOOLW, 0, (LPARAM)&entry);
}

int WINAPI relayTip(HWND window, UINT message, WPARAM wp, LPARAM lp, const WCHAR* text)
{
    HWND dialog = GetAncestor(window, GA_PARENT);
    HWND tooltip = tooltipOf(dialog);
    if (!tooltip && text) tooltip = createTooltip(dialog);
    if (!tooltip) return 0;
    const bool known = hasEntry(tooltip, window);
    if (text ? !known || !entrySays(tooltip, window, text) : known) replaceEntry(tooltip, window, text);
    if (text) relay(tooltip, window, message, wp, lp);
    return 1;
}

static TOOLINFOW trackedEntry(HWND dialog, const wchar_t* text)
{
    TOOLINFOW entry = {};
    entry.cbSize = TTTOOLINFOW_V2_SIZE;
    entry.uFlags = TTF_TRACK | TTF_ABSOLUTE;
    entry.hwnd = dialog;
    entry.lpszText = (wchar_t*)text;
    return entry;
}

// Below a lying control; for a standing one beside the dialog, which may show at its right what the value does.
static LPARAM placeBeside(HWND control)
{
    RECT rect = {}, dialog = {};
    GetWindowRect(control, &rect);
    GetWindowRect(GetAncestor(control, GA_PARENT), &dialog);
    const bool lying = rect.right - rect.left > rect.bottom - rect.top;
    return lying ? MAKELPARAM(rect.left, rect.bottom + TIP_GAP) : MAKELPARAM(dialog.right + TIP_GAP, rect.top);
}

void trackTooltip(HWND control, const wchar_t* text)
{
    HWND dialog = GetAncestor(control, GA_PARENT);
    HWND tooltip = tooltipOf(dialog);
    if (!tooltip && text) tooltip = createTooltip(dialog);
    if (!tooltip) return;
    TOOLINFOW known = trackedEntry(dialog, nullptr), entry = trackedEntry(dialog, text);
    if (text) {
        if (!SendMessageW(tooltip, TTM_GETTOOLINFOW, 0, (LPARAM)&known)) {
            SendMessageW(tooltip, TTM_ADDTOOLW, 0, (LPARAM)&entry);
        }
        SendMessageW(tooltip, TTM_UPDATETIPTEXTW, 0, (LPARAM)&entry);
        SendMessageW(tooltip, TTM_TRACKPOSITION, 0, placeBeside(control));
    }
    SendMessageW(tooltip, TTM_TRACKACTIVATE, text != nullptr, (LPARAM)&entry);
}

void updateTooltip(HWND button)
{
    HWND tooltip = tooltipOf(GetAncestor(button, GA_PARENT));
    if (!tooltip || !hasEntry(tooltip, button)) return;
    wchar_t text[TIP_LENGTH];
    readTip(button, text);
    TOOLINFOW entry = entryOf(button, text);
    SendMessageW(tooltip, TTM_UPDATETIPTEXTW, 0, (LPARAM)&entry);
}

void removeFromTooltip(HWND button)
{
    HWND tooltip = tooltipOf(GetAncestor(button, GA_PARENT));
    if (!tooltip) return;
    TOOLINFOW entry = entryOf(button, nullptr);
    SendMessageW(tooltip, TTM_DELTOOLW, 0, (LPARAM)&entry);
}

void destroyTooltip(HWND dialog)
{
    HWND tooltip = (HWND)RemovePropW(dialog, PROPERTY_NAME);
    if (IsWindow(tooltip)) DestroyWindow(tooltip);
}

int WINAPI releaseDialog(HWND dialog)
{
    destroyTooltip(dialog);
    return 1;
}
