// During a session the library's windows have the user; this program still hears what is for it: F1, and files dropped
// onto the editor, which wait for their turn.
#pragma once

void beginSessionWatch();
void endSessionWatch();
