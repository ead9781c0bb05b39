// Ids of the dialogs' controls, as the user's tools know them: told here once more, so that a number that
// changes in the library shows.
#pragma once

enum PaletteId {
    ID_CLOSE = 2,
    ID_SAVE = 8,
    ID_CONTRAST = 114,
    ID_SELECTION = 116,
    ID_BRUSH = 117,
    ID_RUBBER = 118,
    ID_AEROGRAPHE = 119,
    ID_STAMP = 120,
    ID_SMOOTH = 121,
    ID_SPOONBILL = 122,
    ID_TEXT = 123,
    ID_COLORS = 124,
    ID_LIBRARY = 154,
    ID_UNDO = 190,
    ID_REDO = 191,
    ID_PREVIEW = 200,
    ID_WIDTH = 202,
    ID_HEIGHT = 204,
    ID_LOCK = 206,
    ID_CIRCLE = 208,
    ID_RECTANGLE = 209,
    ID_OPACITY = 212,
    ID_FULL = 213,
    ID_SOFT = 214,
};

enum ContrastId {
    ID_CONTRAST_OK = 1,
    ID_CONTRAST_CANCEL = 2,
    ID_CONTRAST_BAR = 101,
    ID_BRIGHTNESS_BAR = 102,
    ID_SATURATION_BAR = 103,
    ID_HUE_BAR = 104,
    ID_RESET_CONTRAST = 150,
    ID_RESET_BRIGHTNESS = 152,
    ID_RESET_SATURATION = 154,
    ID_RESET_HUE = 156,
};

enum LibraryId {
    ID_LIBRARY_CLOSE = 2,
    ID_LIBRARY_SAVE = 8,
    ID_LIBRARY_DELETE = 9,
    ID_LIBRARY_LIST = 10,
};
