#include "color/kernels/adjust_methods.h"

#ifdef VECTOR_CODE

#include <cstring>

#include "color/kernels/adjust_arithmetic.h"
#include "image/pixels/avx512_intrinsics.h"

namespace {

#include "image/pixels/words_avx512.h"

#include "image/pixels/past_caches_lanes.h"

#include "color/kernels/byte_planes_avx512.h"

struct Tone {
    ByteTable table;
};

LANES_INLINE Tone toneOf(const ColourAdjustment& adjustment)
{
    return {byteTable(adjustment.tone)};
}

LANES_INLINE Vector changed(const Tone& tone, Vector bytes)
{
    return entries(tone.table, bytes);
}

#include "color/kernels/tone_lanes.h"

#include "color/kernels/hls_planes_avx512.h"

struct Change {
    Tone tone;
    Vector factor;
    Starts starts;
};

LANES_INLINE Planes toned(const Tone& tone, const Planes& in)
{
    return {{changed(tone, in.channel[0]), changed(tone, in.channel[1]), changed(tone, in.channel[2])}};
}

// `count` times PIXELS, at most BATCH.
template <typename Place>
LANES_INLINE void changePixels(const Change& change, const uint8_t* source, uint8_t* target, size_t count, Place place)
{
    Batch batch;
    for (size_t n = 0; n < count; ++n)
        measure(batch, n, toned(change.tone, loadPlanes(source + n * PIXELS * 3)), change.starts);
    for (size_t n = 0; n < count; ++n)
        store(batch.saturation[n], saturationOf(batch, n, change.factor));
    for (size_t n = 0; n < count; ++n)
        store(batch.hue[n], hueOf(batch, n));
    for (size_t n = 0; n < count; ++n)
        storePlanes(target + n * PIXELS * 3, fromHls(batch, n), place);
}

// Returns how many pixels the batches are.
template <typename Place>
LANES_INLINE size_t changeBatches(const Change& change, const uint8_t* source, uint8_t* target, size_t pixelCount,
                                  Place place)
{
    size_t done = 0;
    while (pixelCount - done >= PIXELS) {
        const size_t rest = (pixelCount - done) / PIXELS, count = rest < BATCH ? rest : BATCH;
        changePixels(change, source + done * 3, target + done * 3, count, place);
        done += count * PIXELS;
    }
    return done;
}

LANES_INLINE Change changeOf(const ColourAdjustment& adjustment)
{
    return {toneOf(adjustment), all(adjustment.saturationFactor), startsOf(adjustment.hueShift)};
}

VECTOR_FUNCTION void colourPixels(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target,
                                  size_t pixelCount)
{
    const Change change = changeOf(adjustment);
    const size_t done = changeBatches(change, source, target, pixelCount, InCaches());
    if (done == pixelCount) return;
    uint8_t rest[PIXELS * 3] = {};
    memcpy(rest, source + done * 3, (pixelCount - done) * 3);
    changePixels(change, rest, rest, 1, InCaches());
    memcpy(target + done * 3, rest, (pixelCount - done) * 3);
}

// The first pixel that begins a line of the caches is 43 times the bytes up to the line away: 3 * 43 is a line's length
// twice and 1.
VECTOR_FUNCTION void colourLarge(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target,
                                 size_t pixelCount)
{
    const size_t upToLine = -(uintptr_t)target % LINE_BYTES * 43 % LINE_BYTES;
    const size_t head = upToLine < pixelCount ? upToLine : pixelCount;
    const size_t end = head + changeBatches(changeOf(adjustment), source + head * 3, target + head * 3,
                                            pixelCount - head, PastCaches());
    _mm_sfence();
    colourPixels(adjustment, source, target, head);
    colourPixels(adjustment, source + end * 3, target + end * 3, pixelCount - end);
}

}  // namespace

const ColourMethod COLOUR_AVX512 = {toneBytes, toneLarge, colourPixels, colourLarge};

#endif
