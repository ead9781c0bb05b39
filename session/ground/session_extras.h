// What a session remembers besides its record, whose fields are fixed. One for each session, zeroed at its
// start and when its canvas is created, so that nothing of it outlives the record. What it owns is said where it
// stands, and given back at the latest when the canvas goes; the locks of KeptOriginal and the kept blocks, at the
// session's end.
#pragma once

#include <windows.h>

#include <cstdint>

#include "color/values/colour_values.h"
#include "session/ground/block_store.h"
#include "session/ground/canvas_state.h"
#include "session/ground/press_state.h"
#include "session/ground/selection_progress.h"
#include "session/ground/tool_table.h"

// The brush's picture at the pointer. A brush may be larger on the screen than the canvas: its bitmap then holds
// only as much of it as can be seen at once.
struct OutlinePicture {
    SIZE whole;    // of the brush on the screen when the picture was made
    SIZE part;     // of the bitmaps: at most the client area of the host dialog
    POINT offset;  // what the bitmap shows now: its corner within the whole picture
};

// What the present brush mask was made for; a mask that fits is kept.
struct BrushMaskKey {
    HGLOBAL mask;
    int width, height;
    uint32_t shape;
};

// How the session is being left. Once that is decided, nothing gets into the image any more; while undecided,
// leaving counts as Close.
enum LeavingState { LEAVING_UNDECIDED, LEAVING_CLOSED, LEAVING_SAVED };

// The host's image and the session's originalImage, both locked: image/original_image.h.
struct KeptOriginal {
    HGLOBAL image;
    void* imageBytes;     // null when it is not locked
    void* originalBytes;  // null when it is not locked
    size_t size;          // bytes of the original
};

// What is known of the settings file, so that nothing in it is overwritten that was not read and that the user
// has not changed: tools/settings/settings_file.h.
enum StoredValue : uint8_t {
    VALUE_UNREAD,   // it may be there
    VALUE_MISSING,  // it is not there
    VALUE_READ,
};
struct StoredSettings {
    bool mayBeWritten;  // false before the file was looked for
    StoredValue toolValues[TOOL_COUNT], fontValue;
    ToolSettings tools[TOOL_COUNT];  // as they were after reading
    LOGFONTA font;
};

// The first bytes of a typed character, which arrive as one message each and wait here for the rest.
struct WaitingCharacter {
    char bytes[4];
    int count;
};

// A quit message of the host's own, kept while the session's takes its place: session/quit_message.h.
struct HostQuit {
    bool pending;
    int code;
};

struct SessionExtras {
    WNDPROC previousListProc;  // of the library's list box while it is subclassed
    HWND parent;               // the host's window, disabled for the session
    HostQuit hostQuit;
    WaitingCharacter waiting;
    StoredSettings stored;
    LeavingState leaving;
    KeptOriginal kept;
    OutlinePicture outline;
    BrushMaskKey brushMaskKey;
    CanvasState canvas;
    SelectionProgress selection;
    bool contrastRuns;              // the contrast dialog is there, open or ended
    ColourValues selectionColours;  // all of them; those that have a field in the record are its: selection_state.h
    BlockStore blocks;
    PressState press;
};

extern SessionExtras sessionExtras;

// False once the session is being left: a window that was open meanwhile has nothing more to do.
inline bool sessionGoesOn()
{
    return sessionExtras.leaving == LEAVING_UNDECIDED;
}
