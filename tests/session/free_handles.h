// How many more objects of a kind the process could make. Exact: the system's tables are bounded.
#pragma once

int freeMemoryHandles();
int freeGraphicsHandles();
