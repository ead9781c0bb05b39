// <immintrin.h> without what GCC 12 says of it: it takes the deliberately undefined inputs inside this
// header's own functions for mistakes.
#pragma once

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#include <immintrin.h>
#pragma GCC diagnostic pop
