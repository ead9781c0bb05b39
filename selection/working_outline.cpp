#include "selection/working_outline.h"

#include "session/ground/session_record.h"

Outline workingOutline()
{
    return {session->rowCrossings,
            session->outlinePoints,
            session->outlinePointCount,
            {(int)session->outlineLastPoint.x, (int)session->outlineLastPoint.y},
            {(int)session->outlineStartPoint.x, (int)session->outlineStartPoint.y},
            session->outlineIncomplete != 0};
}

void putOutline(const Outline& outline)
{
    session->rowCrossings = outline.crossings;
    session->outlinePoints = outline.points;
    session->outlinePointCount = outline.pointCount;
    session->outlineLastPoint = {outline.last.x, outline.last.y};
    session->outlineStartPoint = {outline.start.x, outline.start.y};
    session->outlineIncomplete = outline.incomplete;
}

Outline takeWorkingOutline()
{
    const Outline outline = workingOutline();
    putOutline(Outline{});
    return outline;
}
