// What a real canvas costs, on a photo of 6000 x 4000 pixels shown on 900 x 600 of the screen:
//   press_24mp_*            MP/s   from the press of the button to its first dab on the canvas (24 MP a press), and
//                                  beside it one plain copy of the photo
//   moves_24mp_full, _smooth  moves/s  a Brush stroke of 48 x 48 from its press to its release in moves of 3 to 12
//                                  pixels, each shown at once, undo step included
//   repaint_quarter_24mp  repaints/s   a quarter of the canvas invalidated and painted again
// And without windows:
//   pieces_hard_48, _soft_48, _hard_16, _soft_16  points/s  the way of the dab_ keys, a piece of 3 to 12 points at a
//                                  time
//
// The groups of keys, one file each (keys_painting.cpp and so on), in the order in which they run.
#pragma once

#include "bench/harness.h"

extern const BenchGroup colourKeys;
extern const BenchGroup paintingKeys;
extern const BenchGroup dabKeys;
extern const BenchGroup imageKeys;
extern const BenchGroup selectionKeys;
extern const BenchGroup floatingKeys;
extern const BenchGroup fileKeys;
extern const BenchGroup pressKeys;
extern const BenchGroup canvasKeys;
extern const BenchGroup viewKeys;
extern const BenchGroup yardstickKeys;

// A new group is declared above and added here.
static const BenchGroup* const benchGroups[] = {
    &colourKeys, &paintingKeys, &dabKeys,    &imageKeys, &selectionKeys, &floatingKeys,
    &fileKeys,   &pressKeys,    &canvasKeys, &viewKeys,  &yardstickKeys,
};
