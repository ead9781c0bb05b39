#include "controls/tooltip.h"

#include <commctrl.h>

#include "controls/caption.h"

static const wchar_t propertyName[] = L"KovTooltip";

enum { TIP_LENGTH = 512 };

static HWND tooltipOf(HWND dialog)
{
    HWND tooltip = (HWND)GetPropW(dialog, propertyName);
    return IsWindow(tooltip) ? tooltip : nullptr;
}

static HWND createTooltip(HWND dialog)
{
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_BAR_CLASSES};
    if (!InitCommonControlsEx(&classes)) return nullptr;
    HWND tooltip = CreateWindowExW(WS_EX_TOPMOST | WS_EX_NOACTIVATE, TOOLTIPS_CLASSW, nullptr,
                                   WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                                   CW_USEDEFAULT, dialog, nullptr, nullptr, nullptr);
    if (tooltip && !SetPropW(dialog, propertyName, tooltip)) {
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

static void readTip(HWND button, wchar_t (&text)[TIP_LENGTH])
{
    text[0] = 0;
    GetWindowTextW(button, text, TIP_LENGTH);
    shownText(text);
    removeAccessKeys(text);
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

void relayToTooltip(HWND button, UINT message, WPARAM wp, LPARAM lp)
{
    HWND dialog = GetAncestor(button, GA_PARENT);
    HWND tooltip = tooltipOf(dialog);
    if (!tooltip) tooltip = createTooltip(dialog);
    if (!tooltip || (!hasEntry(tooltip, button) && !addEntry(tooltip, button))) return;

    MSG relayed = {button, message, wp, lp, (DWORD)GetMessageTime(), {(SHORT)LOWORD(lp), (SHORT)HIWORD(lp)}};
    ClientToScreen(button, &relayed.pt);
    SendMessageW(tooltip, TTM_RELAYEVENT, 0, (LPARAM)&relayed);
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
    HWND tooltip = (HWND)RemovePropW(dialog, propertyName);
    if (IsWindow(tooltip)) DestroyWindow(tooltip);
}
