// Hue, lightness and saturation in integers.
//
// Hue 0..252 (252 = a full turn, 42 = 60 degrees), lightness 0..252, saturation 0..252; red, green and
// blue 0..255. Gray has hue 168 and saturation 0.
#pragma once

#include <cstdint>

void rgbToHls(uint16_t red, uint16_t green, uint16_t blue, uint16_t* hue, uint16_t* lightness, uint16_t* saturation);

void hlsToRgb(uint16_t hue, uint16_t lightness, uint16_t saturation, uint8_t* red, uint8_t* green, uint8_t* blue);

// One channel of a hue, 0..252, between the levels m1 (lowest) and m2 (highest). The hue may lie up to
// one turn outside 0..252.
uint16_t hueToRgb(uint16_t m1, uint16_t m2, int hue);
