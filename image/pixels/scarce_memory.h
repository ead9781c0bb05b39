// Memory for pure code. What others keep for speed's sake is given back before a request fails.
#pragma once

#include <cstddef>

// As malloc; freed with free. Null when there is no memory, also after the reserve has been given up.
void* takeMemory(size_t bytes);

// Gives back what is kept for later use; true when there was some. Null: nobody keeps any.
extern bool (*giveUpReserve)();
