#include "session/dialogs/tool_choice.h"

#include "resources/resource_ids.h"
#include "session/ground/session_record.h"

void selectTool(ToolId tool)
{
    const HWND palette = session->paletteDialog;
    if (!palette) return;
    SendMessageA(palette, WM_COMMAND, MAKEWPARAM(tool, BN_CLICKED), (LPARAM)GetDlgItem(palette, (int)tool));
    CheckRadioButton(palette, BUTTON_FIRST_TOOL, BUTTON_LAST_TOOL, (int)tool);
}
