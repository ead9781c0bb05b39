#include "host/host_menu.h"

#include "host/texts.h"

struct MenuEntry {
    TextId menu;
    TextId text;
    HostCommand command;
    const wchar_t* key;  // null: none
    bool control;
};
static const MenuEntry entries[] = {
    {TEXT_MENU_FILE, TEXT_MENU_OPEN, COMMAND_OPEN, L"O", true},
    {TEXT_MENU_FILE, TEXT_MENU_SAVE_AS, COMMAND_SAVE_AS, L"S", true},
    {TEXT_MENU_FILE, TEXT_MENU_EXIT, COMMAND_EXIT, nullptr, false},
    {TEXT_MENU_HELP, TEXT_MENU_GUIDE, COMMAND_GUIDE, L"F1", false},
    {TEXT_MENU_HELP, TEXT_MENU_ABOUT, COMMAND_ABOUT, nullptr, false},
};

static std::wstring textOf(const MenuEntry& entry)
{
    std::wstring text = caption(entry.text);
    if (entry.key) text += L"\t" + (entry.control ? caption(TEXT_KEY_CONTROL) + L"+" : L"") + entry.key;
    return text;
}

static HMENU createPart(TextId menu)
{
    HMENU part = CreatePopupMenu();
    for (const MenuEntry& entry : entries) {
        if (entry.menu != menu) continue;
        if (entry.command == COMMAND_EXIT) AppendMenuW(part, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(part, MF_STRING, entry.command, textOf(entry).c_str());
    }
    return part;
}

HMENU createHostMenu()
{
    HMENU menu = CreateMenu();
    for (TextId part : {TEXT_MENU_FILE, TEXT_MENU_HELP})
        AppendMenuW(menu, MF_POPUP, (UINT_PTR)createPart(part), caption(part).c_str());
    return menu;
}

HACCEL createHostKeys()
{
    ACCEL keys[] = {
        {FVIRTKEY | FCONTROL, 'O', COMMAND_OPEN},
        {FVIRTKEY | FCONTROL, 'S', COMMAND_SAVE_AS},
        {FVIRTKEY, VK_F1, COMMAND_GUIDE},
    };
    return CreateAcceleratorTableW(keys, sizeof keys / sizeof *keys);
}
