// The press that may be running on the canvas, for whoever lies beside it.
#pragma once

// Ends it, as the release at its last point would: one thing at a time. Whatever changes tool, settings, image or
// selection on behalf of another window calls this first. Nothing happens when no press runs.
void endCanvasPress();
