// The contrast dialog's reduced copy of the image.
#pragma once

#include "image/pixels/bits_view.h"

struct PreviewSize {
    int width, height;  // 0 in either: there is no room for a preview
};

// As tall as the client area, in the image's proportions; reduced when that is too wide. Divisions
// truncate. All sizes in pixels, the image's at least 1.
PreviewSize previewSizeFor(int imageWidth, int imageHeight, int clientWidth, int clientHeight);

// Fills the preview by nearest neighbour. In stored (bottom-up) order the rows lag by one: row 0 takes
// the image's row 0, and row r takes row (r - 1) x image height / preview height: so the dialog
// shows it.
void samplePreview(BitsView preview, BitsView image);
