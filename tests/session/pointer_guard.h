// Keeps the display's own pointer out of a test: from now on, and until the program ends, only injected input passes.
// Wine would otherwise warp that pointer along with a move and hear of it a little later, at the old place too.
#pragma once

void guardPointer();
bool pointerIsGuarded();
