#include "color/contrast_dialog.h"

void openContrastDialog(HWND, int) {}
