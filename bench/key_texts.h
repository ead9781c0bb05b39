// What each key measures, for --list.
#pragma once

// Null for a key that nobody has described.
const char* textOfKey(const char* name);
