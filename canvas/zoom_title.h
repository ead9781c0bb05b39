// The percentage at the end of the editing window's title while the canvas is zoomed.
#pragma once

// Makes the title fit the view: "name - 200 %", "200 %" where there is no name, and fitted the name alone.
void showZoomInTitle();

void forgetTitle();  // the window goes away
