// Why the vector versions of the colour arithmetic give the same bytes as the plain one.
//
// A lane is 16 bits. mulhi(n, m) >> s is n / D without a remainder to spare when m * D exceeds
// 2^(16+s) by e and the largest n times e stays below 2^(16+s); the constants below are checked so.
//
// Tone table. slope = 191 * whole + part, whole 0 or 1, so i * slope / 191 = i * whole + i * part / 191.
//
// Lightness. (sum * 252 + 255) / 510 rounds sum * 42 / 85 to the nearest; as 85 is odd there are no ties,
// and the same is (sum + 1) * 42 / 85, truncated. It exceeds 126 just when sum exceeds 256.
//
// Variable divisions. (n + D / 2) / D rounds n / D to the nearest, halves up, for odd divisors too; so it
// is n / D + 0.5 truncated. Here n is a whole number below 2^16, D at most 256 and n / D at most 252: a
// quotient that is no half misses the next one by 1/512 at least, and halves are exact in floats. The
// errors of one division and one sum are far below that, in every rounding mode. A divisor of 0 only comes
// with gray; it is raised to 1 so that no host sees a trap. The hue of gray is of no consequence, because
// its saturation is 0.
//
// Hue. Of the three distances from the highest channel, that of the highest is always 0 and that of the
// lowest always 42, so only the middle channel needs a division: with T as its distance, the hue is the
// highest channel's third (0, 84, 168) plus or minus 42 - T. It is minus when the channels in falling order
// go round the circle backwards, which is when an odd number of "green above red", "blue above green" and
// "blue above red" hold; where two highest channels are equal, these comparisons break the tie as they
// must, red before green before blue, and where the two lowest are equal, 42 - T is 0.
// A hue of 252 gives the same colour as 0, so all that counts is the hue within one turn.
//
// Back. m2 is L + C and m1 is L - C. For dark pixels C = (L * S + 126) / 252, because L * 252 / 252 leaves
// no remainder; for bright ones C = S - (L * S + 126) / 252 = ((252 - L) * S + 125) / 252. So the smaller of
// L and 252 - L is what is multiplied. A channel's level is
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

constexpr int LIGHTNESS_FACTOR = 32383;  // 42 / 85
static_assert(LIGHTNESS_FACTOR * 85 >= 42 * 65536 && (LIGHTNESS_FACTOR * 85 - 42 * 65536) * 511 < 65536, "lightness");

constexpr int RECIPROCAL_252 = 33289, SHIFT_252 = 7;
static_assert(reciprocalIsExact(RECIPROCAL_252, 252, SHIFT_252, 126 * 252 + 126), "chroma");

constexpr int RECIPROCAL_21 = 3121;
static_assert(reciprocalIsExact(RECIPROCAL_21, 21, 0, 126 * 42 + 10), "level");

constexpr int RECIPROCAL_84 = 781;
static_assert(reciprocalIsExact(RECIPROCAL_84, 84, 0, 252 + 42), "byte");
