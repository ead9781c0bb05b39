// What the fuzzer once found, a file each.
#pragma once

#include <string>

// Gives every file of the folder to its reader; how many there are.
int readEveryFile(const std::string& folder);
