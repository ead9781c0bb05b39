// The groups of keys, one file each (keys_painting.cpp and so on), in the order in which they run. What each key
// measures is told in key_texts.cpp; `scripts/bench --list` prints it.
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
