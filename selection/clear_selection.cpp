#include "selection/clear_selection.h"

#include "selection/selection_drawing.h"
#include "selection/selection_frame.h"
#include "selection/selection_state.h"
#include "selection/tracking_picture.h"
#include "selection/working_outline.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

static void dropWorkingOutline()
{
    Outline outline = takeWorkingOutline();
    freeOutline(outline);
    freeOutlinePoints(sessionExtras.selection.dabbedFrom);
    if (session->selectionComposite) DeleteObject(session->selectionComposite);
    session->selectionComposite = nullptr;
}

void clearSelection()
{
    if (trackingRuns()) cancelTracking(session->canvasWindow);
    session->selectionActive = 0;
    session->selectionRotation = 0;
    session->selectionHitCode = 0;
    dropWorkingOutline();
    dropSelectionStates();
    emptySelectionRects();
    redrawSelection();
    sessionExtras.selection = {};
}
