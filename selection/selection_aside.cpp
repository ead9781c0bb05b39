#include "selection/selection_aside.h"

#include "selection/clear_selection.h"
#include "selection/selection_drawing.h"
#include "selection/selection_frame.h"
#include "selection/selection_state.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

static SelectionAside& aside = sessionExtras.press.selection;

void setSelectionAside()
{
    forgetSelectionAside();
    aside = {true, {}, session->selectionRect, session->selectionRotation};
    aside.owned = takeOwnedSelection();
    clearSelection();
}

bool takeSelectionBack()
{
    if (!aside.kept) return false;
    putOwnedSelection(aside.owned);
    session->selectionRotation = aside.rotation;
    session->selectionActive = 1;
    setSelectionRect(pixelRectOf(aside.rect));
    aside = {};
    redrawSelection();
    return true;
}

void forgetSelectionAside()
{
    freeOwnedSelection(aside.owned);
    aside = {};
}
