#include "selection/selection_state.h"

#include <initializer_list>

#include "color/colour_adjustment.h"
#include "image/kept_blocks.h"
#include "image/packed_bitmap.h"
#include "selection/selection_frame.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

// Where the record keeps a state.
struct StateFields {
    PixelPoint* SessionRecord::*points;
    int32_t SessionRecord::*pointCount;
    RowHead* SessionRecord::*crossings;
    HGLOBAL SessionRecord::*image;
    HGLOBAL SessionRecord::*mask;
    RECT SessionRecord::*rect;
};

static const StateFields stateFields[] = {
    {&SessionRecord::outlineSnapshot, &SessionRecord::outlinePointCount, &SessionRecord::homeCrossings,
     &SessionRecord::selectionImageSource, &SessionRecord::selectionMaskSource, &SessionRecord::selectionHomeRect},
    {&SessionRecord::referencePointsA, &SessionRecord::referencePointCountA, &SessionRecord::referenceCrossingsA,
     &SessionRecord::referenceImageA, &SessionRecord::referenceMaskA, &SessionRecord::referenceRectA},
    {&SessionRecord::referencePointsB, &SessionRecord::referencePointCountB, &SessionRecord::referenceCrossingsB,
     &SessionRecord::referenceImageB, &SessionRecord::referenceMaskB, &SessionRecord::referenceRectB},
};
static_assert(sizeof stateFields / sizeof stateFields[0] == SELECTION_STATE_COUNT, "one row a state");

// The colour values that the record keeps; others are in the extras alone.
struct RecordedColour {
    int ColourValues::*value;
    int32_t SessionRecord::*field;
};

static const RecordedColour recordedColours[] = {
    {&ColourValues::brightness, &SessionRecord::selectionBrightness},
    {&ColourValues::contrast, &SessionRecord::selectionContrast},
    {&ColourValues::saturation, &SessionRecord::selectionSaturation},
    {&ColourValues::hue, &SessionRecord::selectionHue},
    {&ColourValues::lift, &SessionRecord::selectionLift},
};

bool selectionFloats()
{
    return session->selectionActive && !session->rowCrossings;
}

FloatingSelection selectionState(SelectionState state)
{
    const StateFields& fields = stateFields[state];
    return {session->*fields.points, session->*fields.pointCount, session->*fields.crossings,
            session->*fields.image,  session->*fields.mask,       pixelRectOf(session->*fields.rect)};
}

static void writeState(SelectionState state, const FloatingSelection& value)
{
    const StateFields& fields = stateFields[state];
    session->*fields.points = value.points;
    session->*fields.pointCount = value.pointCount;
    session->*fields.crossings = value.crossings;
    session->*fields.image = value.image;
    session->*fields.mask = value.mask;
    session->*fields.rect = rectOf(value.rect);
}

void putSelectionState(SelectionState state, const FloatingSelection& value)
{
    FloatingSelection before = selectionState(state);
    freeFloating(before);
    writeState(state, value);
}

ColourValues selectionColours()
{
    ColourValues values = sessionExtras.selectionColours;
    for (const RecordedColour& colour : recordedColours)
        values.*colour.value = session->*colour.field;
    return values;
}

void setSelectionColours(const ColourValues& values)
{
    sessionExtras.selectionColours = values;
    for (const RecordedColour& colour : recordedColours)
        session->*colour.field = values.*colour.value;
}

// ---- changes

static void writeShown(PixelPoint* points, HGLOBAL image, HGLOBAL mask)
{
    session->outlinePoints = points;
    session->selectionImage = image;
    session->selectionMask = mask;
}

// All that a change puts in place, made before anything of it is.
struct Change {
    FloatingSelection now, a, b;  // a and b are empty when they stay
    PixelPoint* shownPoints;
    HGLOBAL shownImage, shownMask;
};

static void freeBitmap(HGLOBAL& bitmap)
{
    releaseBlock(bitmap);
    bitmap = nullptr;
}

static void freeChange(Change& change)
{
    for (FloatingSelection* value : {&change.now, &change.a, &change.b})
        freeFloating(*value);
    freeOutlinePoints(change.shownPoints);
    freeBitmap(change.shownImage);
    freeBitmap(change.shownMask);
}

// The unadjusted pixels themselves where no colour is changed. Null when memory is short.
static HGLOBAL makeShownImage(HGLOBAL image, HGLOBAL mask, const ColourValues& values)
{
    if (areNeutral(values)) return shareBitmap(image);
    HGLOBAL shown = duplicateBitmap(image, 1);
    if (shown && !applyColourAdjustment(image, shown, mask, mask, values)) freeBitmap(shown);
    return shown;
}

static bool makeShown(Change& change)
{
    const FloatingSelection& now = change.now;
    change.shownPoints = copyOutlinePoints(now.points, now.pointCount);
    change.shownImage = makeShownImage(now.image, now.mask, selectionColours());
    change.shownMask = shareBitmap(now.mask);
    return change.shownPoints && change.shownImage && change.shownMask;
}

static bool completeChange(Change& change, int renewed)
{
    return makeShown(change) && (!(renewed & RENEW_A) || copyFloating(change.now, change.a)) &&
           (!(renewed & RENEW_B) || copyFloating(change.now, change.b));
}

static void dropShown()
{
    freeOutlinePoints(session->outlinePoints);
    session->outlinePoints = nullptr;
    freeBitmap(session->selectionImage);
    freeBitmap(session->selectionMask);
}

static void takeChange(const Change& change)
{
    dropShown();
    writeShown(change.shownPoints, change.shownImage, change.shownMask);
    putSelectionState(STATE_NOW, change.now);
    if (change.a.points) putSelectionState(STATE_A, change.a);
    if (change.b.points) putSelectionState(STATE_B, change.b);
}

bool changeSelection(FloatingSelection& now, int renewed, int rotation)
{
    Change change = {};
    change.now = now;
    now = {};
    if (!completeChange(change, renewed)) {
        freeChange(change);
        return false;
    }
    takeChange(change);
    session->selectionRotation = rotation;
    session->selectionActive = 1;
    setSelectionRect(change.now.rect);
    return true;
}

OwnedSelection takeOwnedSelection()
{
    OwnedSelection owned = {{}, session->outlinePoints, session->selectionImage, session->selectionMask};
    writeShown(nullptr, nullptr, nullptr);
    for (const SelectionState state : {STATE_NOW, STATE_A, STATE_B})
        owned.states[state] = selectionState(state);
    for (const SelectionState state : {STATE_NOW, STATE_A, STATE_B})
        writeState(state, FloatingSelection{});
    return owned;
}

void putOwnedSelection(const OwnedSelection& owned)
{
    dropSelectionStates();
    writeShown(owned.shownPoints, owned.shownImage, owned.shownMask);
    for (const SelectionState state : {STATE_NOW, STATE_A, STATE_B})
        writeState(state, owned.states[state]);
}

void freeOwnedSelection(OwnedSelection& owned)
{
    for (FloatingSelection& state : owned.states)
        freeFloating(state);
    freeOutlinePoints(owned.shownPoints);
    freeBitmap(owned.shownImage);
    freeBitmap(owned.shownMask);
    owned = {};
}

bool adjustShownImage(const ColourValues& values)
{
    const SessionRecord& s = *session;
    if (s.selectionImage != s.selectionImageSource)
        return applyColourAdjustment(s.selectionImageSource, s.selectionImage, s.selectionMaskSource, s.selectionMask,
                                     values);
    const HGLOBAL shown = makeShownImage(s.selectionImageSource, s.selectionMaskSource, values);
    if (!shown) return false;
    releaseBlock(session->selectionImage);
    session->selectionImage = shown;
    return true;
}

void dropSelectionStates()
{
    dropShown();
    for (const SelectionState state : {STATE_NOW, STATE_A, STATE_B})
        putSelectionState(state, FloatingSelection{});
}
