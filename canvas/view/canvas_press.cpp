#include "canvas/view/canvas_press.h"

#include "session/ground/session_record.h"

void endCanvasPress()
{
    if (session->pressActive) SendMessageA(session->canvasWindow, WM_CANCELMODE, 0, 0);
}
