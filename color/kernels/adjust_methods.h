// The ways of computing what color/kernels/adjust.h promises, by level of vectors. The plain one is the definition.
// In all functions source and target may be the same memory, but must not overlap otherwise. The second one of each
// pair gives the same bytes and is for LARGE_BLOCK bytes and more: what is written passes the caches by.
#pragma once

#include <cstddef>
#include <cstdint>

#include "color/kernels/adjustment.h"
#include "image/pixels/vector_level.h"

struct ColourMethod {
    // Each channel byte through adjustment.tone.
    void (*toneBytes)(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t byteCount);
    void (*toneLarge)(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t byteCount);

    // Tone, then saturation and hue.
    void (*colourPixels)(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t pixelCount);
    void (*colourLarge)(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t pixelCount);
};

extern const ColourMethod COLOUR_PLAIN;
#ifdef VECTOR_CODE
extern const ColourMethod COLOUR_SSE2, COLOUR_AVX2, COLOUR_AVX512;
#endif
