// The faster ways of computing what color/kernels/adjust.h promises. They exist where the compiler can make
// them; elsewhere only the plain way is built.
#pragma once

#include "color/kernels/adjust_plain.h"
#include "image/pixels/vector_level.h"

#ifdef VECTOR_CODE
// Eight pixels at a time, for every processor that this library runs on.
void toneBytesSse2(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t byteCount);
void hlsPixelsSse2(const ColourAdjustment& adjustment, uint8_t* pixels, size_t pixelCount);

// Sixteen pixels at a time; only where the processor and the system know AVX2.
void toneBytesAvx2(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t byteCount);
void hlsPixelsAvx2(const ColourAdjustment& adjustment, uint8_t* pixels, size_t pixelCount);

// Sixty-four pixels at a time, where the processor and the system know AVX-512.
void toneBytesAvx512(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target, size_t byteCount);
void hlsPixelsAvx512(const ColourAdjustment& adjustment, uint8_t* pixels, size_t pixelCount);
#endif
