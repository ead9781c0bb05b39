// Memory of the library's own that no handle stands for. What others keep for speed's sake is given back before a
// request fails.
#pragma once

#include <cstddef>

// As malloc, calloc and realloc; freed with free. Null when there is no memory, also after the reserve has been given
// up; a block that cannot be resized stays as it is.
void* takeMemory(size_t bytes);
void* takeZeroedMemory(size_t count, size_t bytesEach);
void* resizeMemory(void* memory, size_t bytes);

// Gives back what is kept for later use; true when there was some. Null: nobody keeps any.
extern bool (*giveUpReserve)();
