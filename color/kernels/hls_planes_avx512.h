// Hue, lightness and saturation of sixty-four pixels, a byte a value wherever a byte is enough.
// color/kernels/adjust_arithmetic.h has the reasons that are common to all widths; those of the bytes stand here.
//
// No ordinary header: included by color/kernels/adjust_avx512.cpp behind color/kernels/byte_planes_avx512.h.
#pragma once

LANES_INLINE Vector addBytes(Vector a, Vector b)
{
    return _mm512_add_epi8(a, b);
}

LANES_INLINE Truth atLeast(Vector a, int least)
{
    return _mm512_cmpge_epu8_mask(a, allBytes(least));
}

LANES_INLINE Vector oneLessWhere(Truth truth, Vector a)
{
    return _mm512_mask_sub_epi8(a, truth, a, allBytes(1));
}

// ---- divisions

// 65536 / divisor by the divisor less 1, its low and its high bytes. The last one is for 256.
struct alignas(64) Reciprocals {
    uint8_t low[256], high[256];
};

constexpr Reciprocals makeReciprocals()
{
    Reciprocals table = {};
    for (int divisor = 1; divisor <= 256; ++divisor) {
        const int value = divisor == 1 ? 65535 : 65536 / divisor;
        table.low[divisor - 1] = (uint8_t)(value & 255);
        table.high[divisor - 1] = (uint8_t)(value >> 8);
    }
    return table;
}

constexpr Reciprocals RECIPROCALS = makeReciprocals();

// (number * factor + divisor / 2) / divisor of words. The product with the reciprocal falls short of the quotient by
// less than 1, because the numerator is below 65536: so the quotient is that or 1 more, and the remainder tells.
LANES_INLINE Vector rounded(Vector number, int factor, Vector divisor, Vector reciprocal)
{
    const Vector numerator = add(multiply(number, all(factor)), shiftRight<1>(divisor));
    const Vector quotient = multiplyHigh(numerator, reciprocal);
    const Vector remainder = subtract(numerator, multiply(quotient, divisor));
    const __mmask32 more = _mm512_cmpge_epu16_mask(remainder, divisor);
    return _mm512_mask_add_epi16(quotient, more, quotient, all(1));
}

struct Words {
    Vector low, high;
};

// The same of bytes; the divisor is given less 1.
LANES_INLINE Words roundedBytes(Vector number, int factor, Vector lessOne)
{
    const Vector lows = entries(byteTable(RECIPROCALS.low), lessOne),
                 highs = entries(byteTable(RECIPROCALS.high), lessOne);
    return {rounded(lowBytes(number), factor, add(lowBytes(lessOne), all(1)), LANES(unpacklo_epi8)(lows, highs)),
            rounded(highBytes(number), factor, add(highBytes(lessOne), all(1)), LANES(unpackhi_epi8)(lows, highs))};
}

// a * b + c of bytes as words, where b and c are below 128 and nothing exceeds 32767.
LANES_INLINE Words sumOfProducts(Vector a, Vector b, Vector c)
{
    const Vector one = allBytes(1);
    return {weighedLow(a, one, b, c), weighedHigh(a, one, b, c)};
}

// ---- to hue, lightness and saturation

// (sum + 1) * 42 / 85 of two bytes. With their mean m, halves up, that is m less m / 85 where the sum is odd, and m
// less (m - 42) / 85 where it is even; both divisions go up.
LANES_INLINE Vector lightnessOf(Vector highest, Vector lowest)
{
    const Vector mean = LANES(avg_epu8)(highest, lowest);
    const Truth even = _mm512_testn_epi8_mask(_mm512_xor_si512(highest, lowest), allBytes(1));
    const Vector from = _mm512_mask_subs_epu8(mean, even, mean, allBytes(42));
    return oneLessWhere(atLeast(from, 171), oneLessWhere(atLeast(from, 86), oneLessWhere(atLeast(from, 1), mean)));
}

// The sum of the two, or 510 less the sum where bright: at most 256, here less 1. For 0, which comes only with gray,
// 256 will do.
LANES_INLINE Vector roomLessOne(Vector highest, Vector lowest, Truth bright)
{
    const Vector full = allBytes(255);
    return addBytes(addBytes(_mm512_mask_sub_epi8(highest, bright, full, highest),
                             _mm512_mask_sub_epi8(lowest, bright, full, lowest)),
                    full);
}

LANES_INLINE Vector scaledSaturation(const Words& pure, Vector factor)
{
    const Vector most = all(252);
    return packBytes(smaller(shiftRight<7>(multiply(pure.low, factor)), most),
                     smaller(shiftRight<7>(multiply(pure.high, factor)), most));
}

// Where the hues of red, green and blue begin, shifted, within one turn.
struct Starts {
    Vector red, green, blue;
};

LANES_INLINE Vector withinOneTurn(int hue)
{
    return allBytes((hue % 252 + 252) % 252);
}

LANES_INLINE Starts startsOf(int shift)
{
    return {withinOneTurn(shift), withinOneTurn(shift + 84), withinOneTurn(shift + 168)};
}

// A batch goes through short loops one after the other: the processor has few enough values at a time for its
// registers, and many pixels that do not wait for one another.
constexpr size_t BATCH = 8;  // times PIXELS

struct alignas(64) Batch {
    uint8_t range[BATCH][64], room[BATCH][64], towardsMiddle[BATCH][64], start[BATCH][64];
    uint8_t lightness[BATCH][64], saturation[BATCH][64], hue[BATCH][64];
    Truth backwards[BATCH];
};

LANES_INLINE Vector startOf(const Planes& in, Vector higherOther, const Starts& starts)
{
    const Truth blueAboveGreen = _mm512_cmpgt_epu8_mask(in.channel[0], in.channel[1]);
    const Truth redHighest = _mm512_cmple_epu8_mask(higherOther, in.channel[2]);
    return choose(redHighest, starts.red, choose(blueAboveGreen, starts.blue, starts.green));
}

LANES_INLINE Truth goesBackwards(const Planes& in)
{
    const Vector blue = in.channel[0], green = in.channel[1], red = in.channel[2];
    return _mm512_cmpgt_epu8_mask(blue, green) ^ _mm512_cmpgt_epu8_mask(green, red) ^ _mm512_cmpgt_epu8_mask(blue, red);
}

LANES_INLINE void measure(Batch& batch, size_t n, const Planes& in, const Starts& starts)
{
    const Vector blue = in.channel[0], green = in.channel[1], red = in.channel[2];
    const Vector higher = largerBytes(green, blue), lower = smallerBytes(green, blue);
    const Vector highest = largerBytes(higher, red), lowest = smallerBytes(lower, red);
    const Vector middle = largerBytes(lower, smallerBytes(higher, red));
    const Vector lightness = lightnessOf(highest, lowest);
    store(batch.start[n], startOf(in, higher, starts));
    batch.backwards[n] = goesBackwards(in);
    store(batch.range[n], subtractBytes(highest, lowest));
    store(batch.towardsMiddle[n], subtractBytes(highest, middle));
    store(batch.lightness[n], lightness);
    store(batch.room[n], roomLessOne(highest, lowest, atLeast(lightness, 127)));
}

LANES_INLINE Vector saturationOf(const Batch& batch, size_t n, Vector factor)
{
    return scaledSaturation(roundedBytes(load(batch.range[n]), 252, load(batch.room[n])), factor);
}

// Steps go forwards, or as 252 - steps backwards. 252 less is 4 more in bytes.
LANES_INLINE Vector hueOf(const Batch& batch, size_t n)
{
    const Words distance =
        roundedBytes(load(batch.towardsMiddle[n]), 42, subtractBytes(load(batch.range[n]), allBytes(1)));
    const Vector steps = subtractBytes(allBytes(42), packBytes(distance.low, distance.high));
    const Vector start = load(batch.start[n]);
    const Vector way = _mm512_mask_sub_epi8(steps, batch.backwards[n], allBytes((char)252), steps);
    const Truth beyond = _mm512_cmpgt_epu8_mask(way, subtractBytes(allBytes((char)251), start));
    const Vector sum = addBytes(start, way);
    return _mm512_mask_add_epi8(sum, beyond, sum, allBytes(4));
}

// ---- and back

LANES_INLINE Vector chromaOf(Vector lightness, Vector saturation)
{
    const Vector nearer = smallerBytes(lightness, subtractBytes(allBytes((char)252), lightness));
    const Vector half = choose(atLeast(lightness, 127), allBytes(125), allBytes(126));
    const Words product = sumOfProducts(saturation, nearer, half);
    const Vector reciprocal = all(RECIPROCAL_252);
    return packBytes(shiftRight<SHIFT_252>(multiplyHigh(product.low, reciprocal)),
                     shiftRight<SHIFT_252>(multiplyHigh(product.high, reciprocal)));
}

LANES_INLINE Vector partOfChroma(Vector chroma, Vector weight)
{
    const Words product = sumOfProducts(chroma, weight, allBytes(10));
    const Vector reciprocal = all(RECIPROCAL_21);
    return packBytes(multiplyHigh(product.low, reciprocal), multiplyHigh(product.high, reciprocal));
}

// (level + 42) / 84, or level / 84 for gray: 1 more from 42, 126 and 210 on, all even.
struct alignas(64) Roundings {
    uint8_t byHalf[128];
};

constexpr Roundings makeRoundings()
{
    Roundings table = {};
    for (int half = 0; half < 128; ++half)
        table.byHalf[half] = (uint8_t)((half >= 21) + (half >= 63) + (half >= 105));
    return table;
}

constexpr Roundings ROUNDINGS = makeRoundings();

LANES_INLINE Vector bytesOf(Vector level, Truth gray)
{
    // The index counts up to bit 6: what the shift moves in from the byte above is left out.
    const Vector half = shiftRight<1>(_mm512_mask_subs_epu8(level, gray, level, allBytes(42)));
    return addBytes(level, _mm512_permutex2var_epi8(load(ROUNDINGS.byHalf), half, load(ROUNDINGS.byHalf + 64)));
}

// Of the three channels one is the highest (lightness + chroma), one the lowest (lightness - chroma), and one lies
// between, by its distance from the nearest third of a turn. Which is which depends on the sixth of the turn.
LANES_INLINE Planes fromHls(const Batch& batch, size_t n)
{
    const Vector hue = load(batch.hue[n]), lightness = load(batch.lightness[n]), saturation = load(batch.saturation[n]);
    const Vector third = allBytes(84);
    const Truth second = atLeast(hue, 84), last = atLeast(hue, 168);
    const Vector once = _mm512_mask_sub_epi8(hue, second, hue, third);
    const Vector within = _mm512_mask_sub_epi8(once, last, once, third);

    const Vector chroma = chromaOf(lightness, saturation), base = subtractBytes(lightness, chroma);
    const Vector part = partOfChroma(chroma, smallerBytes(within, subtractBytes(third, within)));
    const Truth gray = _mm512_testn_epi8_mask(saturation, saturation);
    const Vector highest = bytesOf(addBytes(lightness, chroma), gray), lowest = bytesOf(base, gray);
    const Vector middle = bytesOf(addBytes(base, part), gray);

    const Truth later = atLeast(within, 42);
    const Vector leaving = choose(later, middle, highest), coming = choose(later, highest, middle);
    return {{choose(last, leaving, choose(second, coming, lowest)),
             choose(last, lowest, choose(second, leaving, coming)),
             choose(last, coming, choose(second, lowest, leaving))}};
}
