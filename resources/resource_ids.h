// Every number that ties code and resources together. Read by the resource compiler too, so this file
// holds plain defines and comments only.
#pragma once

// ---- Dialogs without a language. The others are found by name: a language code and a suffix. ----
#define DIALOG_UNUSED 3
#define DIALOG_HOST 800  // its only control is the canvas

#define CONTROL_CANVAS 12345
#define CONTROL_SEPARATOR 65535  // shared by all controls that nobody addresses

// ---- Tool palette: controls. The tools' ids are the tools' identity (session/ground/tool_table.h). ----
#define BUTTON_CLOSE 2  // also closes the library dialog
#define BUTTON_SAVE 8   // also saves into the library
#define BUTTON_CONTRAST 114
#define BUTTON_SELECTION 116
#define BUTTON_BRUSH 117
#define BUTTON_RUBBER 118
#define BUTTON_AEROGRAPHE 119
#define BUTTON_STAMP 120
#define BUTTON_SMOOTH 121
#define BUTTON_SPOONBILL 122
#define BUTTON_TEXT 123
#define BUTTON_COLORS 124
#define BUTTON_FIRST_TOOL 114  // one radio group, 114 to 124
#define BUTTON_LAST_TOOL 124
#define BUTTON_LIBRARY 154
#define BUTTON_UNDO 190
#define BUTTON_REDO 191
#define AREA_PREVIEW 200
#define BAR_WIDTH 202
#define BAR_HEIGHT 204
#define CHECK_LOCK_LH 206
#define BUTTON_CIRCLE 208
#define BUTTON_RECTANGLE 209
#define BAR_OPACITY 212
#define BUTTON_EDGE_FULL 213
#define BUTTON_EDGE_SMOOTH 214

// ---- Contrast dialog: controls ----
#define BUTTON_OK 1
#define BUTTON_CANCEL 2
#define BAR_CONTRAST 101
#define BAR_BRIGHTNESS 102
#define BAR_SATURATION 103
#define BAR_HUE 104
#define BUTTON_RESET_CONTRAST 150
#define BUTTON_RESET_BRIGHTNESS 152
#define BUTTON_RESET_SATURATION 154
#define BUTTON_RESET_HUE 156

// ---- Selections library dialog: controls (and BUTTON_CLOSE, BUTTON_SAVE) ----
#define BUTTON_DELETE 9
#define LIST_SELECTIONS 10

// ---- Button picture tables (RT_RCDATA): which picture belongs to which control ----
#define PICTURE_TABLE_PALETTE 100
#define PICTURE_TABLE_CONTRAST_RESET 102
#define PICTURE_TABLE_PALETTE_END 1000
#define PICTURE_TABLE_CONTRAST_END 2000
#define PICTURE_TABLE_LIBRARY 3000

// ---- Pictures (RT_BITMAP) ----
// The same at 1.5 times and at twice the size: id + one of these.
#define PICTURE_LARGE 1000
#define PICTURE_DOUBLE 2000
#define PICTURE_BRUSH 102
#define PICTURE_COLORS 104
#define PICTURE_SMOOTH 106
#define PICTURE_STAMP 108
#define PICTURE_RUBBER 110
#define PICTURE_AEROGRAPHE 112
#define PICTURE_UNDO 114
#define PICTURE_REDO 116
#define PICTURE_CONTRAST 118
#define PICTURE_SELECTION 120
#define PICTURE_CIRCLE 124
#define PICTURE_RECTANGLE 126
#define PICTURE_SPARE 128  // no table shows it
#define PICTURE_TEXT 130
#define PICTURE_SPOONBILL 132
#define PICTURE_RESET_CONTRAST 150
#define PICTURE_RESET_BRIGHTNESS 152
#define PICTURE_RESET_SATURATION 154
#define PICTURE_RESET_HUE 156
#define PICTURE_EDGE_FULL 158
#define PICTURE_EDGE_SMOOTH 160
#define PICTURE_LIBRARY 164
#define PICTURE_OUTLINE_BRUSH 166
#define PICTURE_OK 170
#define PICTURE_CLOSE 171
#define PICTURE_SAVE 172
#define PICTURE_DELETE 173

// ---- Cursors of the tools ----
#define CURSOR_BRUSH 100
#define CURSOR_COLORS 102
#define CURSOR_SMOOTH 104
#define CURSOR_STAMP 106  // also over the selection frame's apply button
#define CURSOR_RUBBER 108
#define CURSOR_AEROGRAPHE 110
#define CURSOR_SPOONBILL 112
#define CURSOR_SELECTION 114
#define CURSOR_TEXT 124
#define CURSOR_OUTLINE_BRUSH 142

// ---- Cursors of the selection frame's buttons ----
#define CURSOR_FLIP_VERTICAL 116
#define CURSOR_FLIP_HORIZONTAL 118
#define CURSOR_BRIGHTER 120
#define CURSOR_DARKER 122
#define CURSOR_ROTATE 126
#define CURSOR_LIFT_UP 128
#define CURSOR_LIFT_DOWN 129
#define CURSOR_HUE_DOWN 130
#define CURSOR_HUE_UP 132
#define CURSOR_SATURATION_MORE 134
#define CURSOR_SATURATION_LESS 136
#define CURSOR_CONTRAST_LESS 138
#define CURSOR_CONTRAST_MORE 140
#define CURSOR_CLOSE 144

// ---- Other cursors ----
#define CURSOR_DRAG_DIALOG 15001     // a palette or dialog held by its background
#define CURSOR_MOVE_SELECTION 15002  // inside a selection

// ---- Strings: id + the language's offset (session/ground/language_table.h) ----
#define STRING_CONFIRM_DELETE 100
#define STRING_LIBRARY_EMPTY 101  // what to do, in a library that holds nothing
// The scroll bars in full words.
#define STRING_WIDTH 102
#define STRING_HEIGHT 103
#define STRING_OPACITY 104
#define STRING_CONTRAST 105
#define STRING_BRIGHTNESS 106
#define STRING_SATURATION 107
#define STRING_HUE 108
// The buttons of the selection frame.
#define STRING_FRAME_CLOSE 110
#define STRING_FRAME_APPLY 111
#define STRING_FRAME_FLIP_VERTICAL 112
#define STRING_FRAME_FLIP_HORIZONTAL 113
#define STRING_FRAME_BRIGHTER 114
#define STRING_FRAME_DARKER 115
#define STRING_FRAME_ROTATE 116
#define STRING_FRAME_HUE_DOWN 117
#define STRING_FRAME_HUE_UP 118
#define STRING_FRAME_SATURATION_MORE 119
#define STRING_FRAME_SATURATION_LESS 120
#define STRING_FRAME_CONTRAST_MORE 121
#define STRING_FRAME_CONTRAST_LESS 122
#define STRING_FRAME_LIFT_UP 123
#define STRING_FRAME_LIFT_DOWN 124
#define STRING_FRAME_RESIZE 125
