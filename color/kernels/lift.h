// The lift: pulls bright pixels towards white in green and blue, so that they lose their yellow cast.
#pragma once

#include <cstddef>
#include <cstdint>

// Lifts pixels (blue, green, red bytes) in place. Every pixel is pulled `times` times with the weight
// of its first gray; red never changes, black does not move. Nothing happens when times is below 1.
void liftPixels(uint8_t* pixels, size_t pixelCount, int times);
