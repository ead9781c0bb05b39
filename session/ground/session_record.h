// SessionRecord: the state of one editing session, in fields whose number and order are fixed. What a session
// remembers besides lives in its SessionExtras (session_extras.h).
//
// Allocated zeroed at the start of each call of the entry, locked once, reached through the module
// global `session`, freed at the end. Nothing in it outlives the call; what a process keeps from call to call is in
// module_state.h. A member that holds a handle
// or a block owns it: whoever stores a new one frees the old one first.
//
// On 32-bit Windows the record is 415 fields of 4 bytes; the field numbers in the comments are fixed
// and checked below. On 64-bit Windows the handles and pointers are wider and the names stay.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "image/pixels/bits_view.h"
#include "session/ground/tool_table.h"

struct RowHead;   // selection/geometry/row_crossings.h
struct UndoStep;  // tools/painting/undo_history.h

// Smallest and largest x and y of a set of points, image pixels.
struct DirtyBox {
    int32_t minX, maxX, minY, maxY;
};

#ifndef _WIN64
#pragma pack(push, 4)  // the double would otherwise round the record up to 1664 bytes
#endif
struct SessionRecord {
    HWND hostDialog;             // 0: the editing window (dialog 800)
    HWND canvasWindow;           // 1: its only child; 0 after the dialog's teardown
    HWND paletteDialog;          // 2: tool palette
    HWND libraryDialog;          // 3: modeless selections library while it is open
    uint32_t currentTool;        // 4: a ToolId; 0 while none is chosen
    uint32_t frameSizing;        // 5: 1 when the last non-client press was on the top or bottom border or a corner
    uint32_t pressActive;        // 6
    uint32_t mouseInside;        // 7: 1 while the pointer is over the canvas
    HGLOBAL previewSource;       // 8: contrast dialog: reduced copy of the image
    HGLOBAL previewImage;        // 9: contrast dialog: its adjusted copy, the one that is painted
    uint32_t brushWidth;         // 10: image pixels, 1..48
    uint32_t brushHeight;        // 11: image pixels, 1..48
    uint32_t brushShape;         // 12: 0 circle, 1 rectangle
    COLORREF paintColour;        // 13
    COLORREF previewBackground;  // 14: key (transparent) colour of the brush pictures
    uint32_t opacity;            // 15: percent; 100 = paint replaces the pixel
    COLORREF previousColour;     // 16: paintColour before a colour pick
    uint32_t outlineIncomplete;  // 17: 1 when memory ran out while the outline was drawn
    int32_t overlayHideCount;    // 18: the cursor outline is drawn only while this is above 0
    uint32_t overlayEnabled;     // 19
    HBITMAP saveUnderBitmap;     // 20: screen pixels under the cursor outline
    HBITMAP outlineBitmap;       // 21: brush picture at screen size
    POINT outlinePos;            // 22..23: top-left of the picture, host dialog client coordinates
    RECT trackRect;              // 24..27: rubber band, host dialog client coordinates
    POINT trackGrabOffset;       // 28..29
    uint32_t trackingSelection;  // 30: 1 while a selection move or resize is dragged
    ToolSettings toolSettings[TOOL_COUNT];  // 31..150: in slot order, see tool_table.h
    HGLOBAL brushMask;                      // 151
    HGLOBAL maskCache;                      // 152: patch picked up by Stamp or Spoonbill
    HGLOBAL strokeCoverage;                 // 153: 8-bit map: what each pixel has received in this stroke;
                                            //      zeroed where the stroke comes, stale elsewhere
    HGLOBAL strokeStartImage;               // 154: unused, undoSnapshot serves
    uint32_t edgeMode;                      // 155: 0 Full, 1 Smooth
    uint32_t maskScale;                     // 156: 1, or 2 for the soft Aerographe
    POINT clickPoints[2];                   // 157..160: press position, latest position (image pixels)
    POINT strokePoint;                      // 161..162: newest pointer position, image pixels
    POINT strokePrevPoint;                  // 163..164: the one before
    HGLOBAL originalImage;                  // 165: duplicate of the host image, copied back on Close
    RowHead* rowCrossings;                  // 166
    int32_t rowCount;                       // 167
    uint32_t selectionHitCode;              // 168
    PixelPoint* outlineSnapshot;            // 169
    PixelPoint* outlinePoints;              // 170
    int32_t outlinePointCount;              // 171
    RECT selectionRect;                     // 172..175: image pixels
    RECT applyButton;                       // 176..179
    RECT flipVerticalButton;                // 180..183
    RECT flipHorizontalButton;              // 184..187
    RECT brighterButton;                    // 188..191
    RECT darkerButton;                      // 192..195
    RECT topLeftHandle;                     // 196..199
    RECT topRightHandle;                    // 200..203
    RECT bottomRightHandle;                 // 204..207
    RECT bottomLeftHandle;                  // 208..211
    RECT closeButton;                       // 212..215
    RECT selectionHomeRect;                 // 216..219: selectionRect when the selection was closed
    RECT selectionOuterRect;                // 220..223: selectionRect grown by the frame
    RowHead* homeCrossings;                 // 224
    RECT hueDownButton;                     // 225..228
    RECT hueUpButton;                       // 229..232
    RECT saturationMoreButton;              // 233..236
    RECT saturationLessButton;              // 237..240
    RECT contrastMoreButton;                // 241..244
    RECT contrastLessButton;                // 245..248
    RECT rotateButton;                      // 249..252
    RECT liftUpButton;                      // 253..256
    RECT liftDownButton;                    // 257..260
    uint32_t rotatingSelection;             // 261
    POINT rotationCentre;                   // 262..263: host dialog client coordinates
    double rotationStartAngle;              // 264..265
    int32_t selectionRotation;              // 266: accumulated whole degrees
    int32_t rotationDegrees;                // 267: of the last drag
    RECT referenceRectB;                    // 268..271
    PixelPoint* referencePointsA;           // 272
    RowHead* referenceCrossingsA;           // 273
    HGLOBAL referenceImageA;                // 274
    HGLOBAL referenceMaskA;                 // 275
    int32_t referencePointCountA;           // 276
    RECT referenceRectA;                    // 277..280
    PixelPoint* referencePointsB;           // 281
    RowHead* referenceCrossingsB;           // 282
    HGLOBAL referenceImageB;                // 283
    HGLOBAL referenceMaskB;                 // 284
    int32_t referencePointCountB;           // 285
    POINT outlineLastPoint;                 // 286..287
    POINT outlineStartPoint;                // 288..289
    HGLOBAL selectionImage;                 // 290
    HGLOBAL selectionImageSource;           // 291
    HGLOBAL selectionMask;                  // 292
    HGLOBAL selectionMaskSource;            // 293
    HBITMAP selectionComposite;             // 294
    int32_t selectionBrightness;            // 295
    int32_t selectionContrast;              // 296
    int32_t selectionSaturation;            // 297
    int32_t selectionHue;                   // 298
    int32_t selectionLift;                  // 299
    uint32_t reshapeFromOutside;            // 300: 0 when the outline brush was pressed inside the selection, else 1
    uint32_t selectionActive;               // 301: 1 from the closing of an outline until it is cleared
    char lastSavedSelection[256];           // 302..365
    LOGFONTA textFont;                      // 366..380
    HFONT textFontHandle;                   // 381
    uint32_t caretCreated;                  // 382
    int32_t caretX;                         // 383
    int32_t caretY;                         // 384
    HGLOBAL textBuffer;                     // 385
    int32_t caretIndex;                     // 386
    int32_t textOriginX;                    // 387
    int32_t textOriginY;                    // 388
    HBITMAP textStrip;                      // 389
    UndoStep* undoSteps;                    // 390
    int32_t undoPosition;                   // 391
    int32_t undoCount;                      // 392
    HGLOBAL undoSnapshot;                   // 393: the image at the press, where the stroke has come; stale elsewhere
    DirtyBox dirtyBox;                      // 394..397: dab centres of the current stroke, image pixels
    uint32_t selectionReshaped;             // 398
    RECT reshapeRect;                       // 399..402
    RECT reshapeHomeRect;                   // 403..406
    RECT frameInnerRect;                    // 407..410
    RECT frameOuterRect;                    // 411..414
};

#ifndef _WIN64
#pragma pack(pop)
#define FIELD_AT(name, number) static_assert(offsetof(SessionRecord, name) == 4 * (number), #name)
FIELD_AT(hostDialog, 0);
FIELD_AT(canvasWindow, 1);
FIELD_AT(paletteDialog, 2);
FIELD_AT(libraryDialog, 3);
FIELD_AT(currentTool, 4);
FIELD_AT(frameSizing, 5);
FIELD_AT(pressActive, 6);
FIELD_AT(mouseInside, 7);
FIELD_AT(previewSource, 8);
FIELD_AT(previewImage, 9);
FIELD_AT(brushWidth, 10);
FIELD_AT(brushHeight, 11);
FIELD_AT(brushShape, 12);
FIELD_AT(paintColour, 13);
FIELD_AT(previewBackground, 14);
FIELD_AT(opacity, 15);
FIELD_AT(previousColour, 16);
FIELD_AT(outlineIncomplete, 17);
FIELD_AT(overlayHideCount, 18);
FIELD_AT(overlayEnabled, 19);
FIELD_AT(saveUnderBitmap, 20);
FIELD_AT(outlineBitmap, 21);
FIELD_AT(outlinePos, 22);
FIELD_AT(trackRect, 24);
FIELD_AT(trackGrabOffset, 28);
FIELD_AT(trackingSelection, 30);
FIELD_AT(toolSettings, 31);
FIELD_AT(brushMask, 151);
FIELD_AT(maskCache, 152);
FIELD_AT(strokeCoverage, 153);
FIELD_AT(strokeStartImage, 154);
FIELD_AT(edgeMode, 155);
FIELD_AT(maskScale, 156);
FIELD_AT(clickPoints, 157);
FIELD_AT(strokePoint, 161);
FIELD_AT(strokePrevPoint, 163);
FIELD_AT(originalImage, 165);
FIELD_AT(rowCrossings, 166);
FIELD_AT(rowCount, 167);
FIELD_AT(selectionHitCode, 168);
FIELD_AT(outlineSnapshot, 169);
FIELD_AT(outlinePoints, 170);
FIELD_AT(outlinePointCount, 171);
FIELD_AT(selectionRect, 172);
FIELD_AT(applyButton, 176);
FIELD_AT(flipVerticalButton, 180);
FIELD_AT(flipHorizontalButton, 184);
FIELD_AT(brighterButton, 188);
FIELD_AT(darkerButton, 192);
FIELD_AT(topLeftHandle, 196);
FIELD_AT(topRightHandle, 200);
FIELD_AT(bottomRightHandle, 204);
FIELD_AT(bottomLeftHandle, 208);
FIELD_AT(closeButton, 212);
FIELD_AT(selectionHomeRect, 216);
FIELD_AT(selectionOuterRect, 220);
FIELD_AT(homeCrossings, 224);
FIELD_AT(hueDownButton, 225);
FIELD_AT(hueUpButton, 229);
FIELD_AT(saturationMoreButton, 233);
FIELD_AT(saturationLessButton, 237);
FIELD_AT(contrastMoreButton, 241);
FIELD_AT(contrastLessButton, 245);
FIELD_AT(rotateButton, 249);
FIELD_AT(liftUpButton, 253);
FIELD_AT(liftDownButton, 257);
FIELD_AT(rotatingSelection, 261);
FIELD_AT(rotationCentre, 262);
FIELD_AT(rotationStartAngle, 264);
FIELD_AT(selectionRotation, 266);
FIELD_AT(rotationDegrees, 267);
FIELD_AT(referenceRectB, 268);
FIELD_AT(referencePointsA, 272);
FIELD_AT(referenceCrossingsA, 273);
FIELD_AT(referenceImageA, 274);
FIELD_AT(referenceMaskA, 275);
FIELD_AT(referencePointCountA, 276);
FIELD_AT(referenceRectA, 277);
FIELD_AT(referencePointsB, 281);
FIELD_AT(referenceCrossingsB, 282);
FIELD_AT(referenceImageB, 283);
FIELD_AT(referenceMaskB, 284);
FIELD_AT(referencePointCountB, 285);
FIELD_AT(outlineLastPoint, 286);
FIELD_AT(outlineStartPoint, 288);
FIELD_AT(selectionImage, 290);
FIELD_AT(selectionImageSource, 291);
FIELD_AT(selectionMask, 292);
FIELD_AT(selectionMaskSource, 293);
FIELD_AT(selectionComposite, 294);
FIELD_AT(selectionBrightness, 295);
FIELD_AT(selectionContrast, 296);
FIELD_AT(selectionSaturation, 297);
FIELD_AT(selectionHue, 298);
FIELD_AT(selectionLift, 299);
FIELD_AT(reshapeFromOutside, 300);
FIELD_AT(selectionActive, 301);
FIELD_AT(lastSavedSelection, 302);
FIELD_AT(textFont, 366);
FIELD_AT(textFontHandle, 381);
FIELD_AT(caretCreated, 382);
FIELD_AT(caretX, 383);
FIELD_AT(caretY, 384);
FIELD_AT(textBuffer, 385);
FIELD_AT(caretIndex, 386);
FIELD_AT(textOriginX, 387);
FIELD_AT(textOriginY, 388);
FIELD_AT(textStrip, 389);
FIELD_AT(undoSteps, 390);
FIELD_AT(undoPosition, 391);
FIELD_AT(undoCount, 392);
FIELD_AT(undoSnapshot, 393);
FIELD_AT(dirtyBox, 394);
FIELD_AT(selectionReshaped, 398);
FIELD_AT(reshapeRect, 399);
FIELD_AT(reshapeHomeRect, 403);
FIELD_AT(frameInnerRect, 407);
FIELD_AT(frameOuterRect, 411);
#undef FIELD_AT
static_assert(sizeof(SessionRecord) == 1660, "415 fields of 4 bytes");
#endif

extern SessionRecord* session;  // null between sessions
