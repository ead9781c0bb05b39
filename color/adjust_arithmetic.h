// Why the vector versions of the colour arithmetic give the same bytes as the plain one.
//
// A lane is 16 bits. mulhi(n, m) >> s is n / D without a remainder to spare when m * D exceeds
// 2^(16+s) by e and the largest n times e stays below 2^(16+s); the constants below are checked so.
//
// Tone table. slope = 191 * whole + part, whole 0 or 1, so i * slope / 191 = i * whole + i * part / 191.
//
// Lightness. (sum * 252 + 255) / 510 = (sum * 84 + 85) / 170: both terms and the divisor share 3.
//
// Variable divisions. Numerators are below 2^16, divisors at most 256, quotients at most 252. An inexact
// quotient misses the next integer by 1/256 at least, and the error of one float division is far below
// that, in every rounding mode; so dividing floats and truncating is exact. A divisor of 0 only comes
// with gray, where the numerator is 0 as well; it is raised to 1 so that no host sees a trap.
//
// Hue. Of the three distances from the highest channel, that of the highest is always 0 and that of the
// lowest always 42, so only the middle channel needs a division: with T as its distance, the hue is the
// highest channel's third (0, 84, 168) plus or minus 42 - T; the sign is that of the difference of the
// other two channels.
//
// Back. With P = (L * S + 126) / 252, m2 is L + P for dark and L + S - P for bright pixels, because
// L * 252 / 252 leaves no remainder. So m2 = L + C and m1 = L - C, and a channel's level is
// m1 + (2 * C * w + 21) / 42 = m1 + (C * w + 10) / 21, where the weight w rises from 0 to 42 over a sixth
// of a turn, stays for a third, and falls again. For red this is |hue - 126| - 42, for green
// 84 - |hue - 84|, for blue 84 - |hue - 168|, each limited to 0..42.
//
// Levels to bytes. (v * 255 + 126) / 252 = v + (v + 42) / 84, and without rounding (gray) v + v / 84.
#pragma once

#include <cstdint>

constexpr bool reciprocalIsExact(uint64_t reciprocal, uint64_t divisor, int shift, uint64_t largest)
{
    const uint64_t one = (uint64_t)1 << (16 + shift);
    return reciprocal < 65536 && reciprocal * divisor >= one && (reciprocal * divisor - one) * largest < one;
}

constexpr int TONE_DIVISOR = 191, TONE_RECIPROCAL = 43920, TONE_SHIFT = 7;
static_assert(reciprocalIsExact(TONE_RECIPROCAL, TONE_DIVISOR, TONE_SHIFT, 255 * 190), "tone line");

constexpr int RECIPROCAL_170 = 49345, SHIFT_170 = 7;
static_assert(reciprocalIsExact(RECIPROCAL_170, 170, SHIFT_170, 510 * 84 + 85), "lightness");

constexpr int RECIPROCAL_63 = 33289, SHIFT_63 = 5;  // divides by 252 after two bits are dropped
static_assert(reciprocalIsExact(RECIPROCAL_63, 63, SHIFT_63, (252 * 252 + 126) / 4), "m2");

constexpr int RECIPROCAL_21 = 3121;
static_assert(reciprocalIsExact(RECIPROCAL_21, 21, 0, 126 * 42 + 10), "level");

constexpr int RECIPROCAL_84 = 781;
static_assert(reciprocalIsExact(RECIPROCAL_84, 84, 0, 252 + 42), "byte");
