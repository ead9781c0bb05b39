// The photos of one start of the program, one after the other.
#pragma once

#include "host/one_photo.h"

// Those that wait, and those that are dropped meanwhile. exitSaved when every one was saved, else the first other code.
// task: what holds for each of them.
ExitCode retouchWaiting(PhotoTask task);

// The window stays: photos are chosen or dropped, results shown and saved once more, until the user leaves.
ExitCode keepDesk();
