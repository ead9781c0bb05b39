// Sixty-four pixels as planes, a vector for each channel, and tables of bytes; for the words of
// image/pixels/words_avx512.h.
//
// No ordinary header: included by color/kernels/adjust_avx512.cpp, inside its unnamed namespace.
#pragma once

typedef __mmask64 Truth;
constexpr size_t PIXELS = 64;

LANES_INLINE Vector choose(Truth truth, Vector where, Vector elsewhere)
{
    return _mm512_mask_blend_epi8(truth, elsewhere, where);
}

struct ByteTable {
    Vector part[4];
};

LANES_INLINE ByteTable byteTable(const uint8_t* bytes)
{
    return {{load(bytes), load(bytes + 64), load(bytes + 128), load(bytes + 192)}};
}

// Permutations count up to bit 6.
LANES_INLINE Vector entries(const ByteTable& table, Vector index)
{
    const Vector first = _mm512_permutex2var_epi8(table.part[0], index, table.part[1]);
    const Vector second = _mm512_permutex2var_epi8(table.part[2], index, table.part[3]);
    return choose(_mm512_movepi8_mask(index), second, first);
}

// Byte i of a plane is byte 3 i + channel of the pixels, and as 3 and 64 have no common divisor, all bytes of a plane
// lie at different places of the three vectors: laid over one another they make one vector, which is put in order.
struct alignas(64) PlaneOrder {
    uint8_t from[3][64], to[3][64];  // by channel
};

constexpr PlaneOrder makePlaneOrder()
{
    PlaneOrder order = {};
    for (int channel = 0; channel < 3; ++channel)
        for (int i = 0; i < 64; ++i) {
            const int place = (3 * i + channel) % 64;
            order.from[channel][i] = (uint8_t)place;
            order.to[channel][place] = (uint8_t)i;
        }
    return order;
}

constexpr PlaneOrder ORDER = makePlaneOrder();

// Places whose number leaves that remainder when divided by 3.
constexpr Truth everyThird(int remainder)
{
    Truth places = 0;
    for (int i = remainder; i < 64; i += 3)
        places |= (Truth)1 << i;
    return places;
}

constexpr Truth THIRDS[3] = {everyThird(0), everyThird(1), everyThird(2)};

struct Planes {
    Vector channel[3];  // blue, green, red
};

LANES_INLINE Planes loadPlanes(const uint8_t* pixels)
{
    const Vector first = load(pixels), second = load(pixels + 64), third = load(pixels + 128);
    Planes planes;
    for (int c = 0; c < 3; ++c) {
        const Vector over = choose(THIRDS[(c + 2) % 3], second, choose(THIRDS[c], first, third));
        planes.channel[c] = _mm512_permutexvar_epi8(load(ORDER.from[c]), over);
    }
    return planes;
}

struct InCaches {};
struct PastCaches {};  // only to lines of the caches

LANES_INLINE void put(uint8_t* at, Vector bytes, InCaches)
{
    store(at, bytes);
}

LANES_INLINE void put(uint8_t* at, Vector bytes, PastCaches)
{
    stream(at, bytes);
}

template <typename Place>
LANES_INLINE void storePlanes(uint8_t* pixels, const Planes& planes, Place place)
{
    Vector placed[3];
    for (int c = 0; c < 3; ++c)
        placed[c] = _mm512_permutexvar_epi8(load(ORDER.to[c]), planes.channel[c]);
    for (int part = 0; part < 3; ++part) {
        const Vector others = choose(THIRDS[(4 - part) % 3], placed[1], placed[2]);
        put(pixels + part * 64, choose(THIRDS[(3 - part) % 3], placed[0], others), place);
    }
}
