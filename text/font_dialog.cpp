#include "text/font_dialog.h"

#include <commdlg.h>

#include <cstdlib>

#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "text/text_strip.h"
#include "text/text_tool.h"

static void takeChosenFont(const LOGFONTA& font, COLORREF colour)
{
    session->textFont = font;
    session->brushHeight = (uint32_t)abs((int)font.lfHeight);
    createTextFont();  // the dialog's heights are negative, the description's (and the settings file's) are not
    session->paintColour = colour;
}

void chooseTextFont(HWND palette)
{
    endText(session->canvasWindow);
    session->textFont.lfHeight = (LONG)session->brushHeight;
    LOGFONTA font = session->textFont;  // the dialog may write into it long before OK
    CHOOSEFONTA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = palette;
    dialog.lpLogFont = &font;
    dialog.rgbColors = session->paintColour;
    dialog.Flags = CF_SCREENFONTS | CF_INITTOLOGFONTSTRUCT | CF_EFFECTS;
    dialog.nFontType = SCREEN_FONTTYPE;
    EnableWindow(session->hostDialog, FALSE);
    const bool chosen = ChooseFontA(&dialog) != 0;
    if (!sessionGoesOn()) return;
    if (chosen) takeChosenFont(font, dialog.rgbColors);
    EnableWindow(session->hostDialog, TRUE);
}
