// Every reader with its seeds, what was once found, and seeded random damage. scripts/fuzz goes on from here, guided by
// what the inputs reach.
#include <gtest/gtest.h>

#include <random>

#include "tests/fuzz/readers.h"
#include "tests/fuzz/regression_files.h"

typedef std::vector<uint8_t> Bytes;

static std::mt19937 dice(15);

static size_t below(size_t n)
{
    return dice() % n;
}

static void damage(Bytes* bytes, const Bytes& other)
{
    static const uint8_t telling[] = {0, 1, 2, 3, 4, 0x7F, 0x80, 0xFE, 0xFF, '0', '9', ',', '-', ':', '8', 0xD8};
    for (size_t blow = below(6) + 1; blow > 0 && bytes->size() > 1; --blow) {
        const size_t at = 1 + below(bytes->size() - 1), length = below(8) + 1;
        switch (below(6)) {
        case 0: (*bytes)[at] = (uint8_t)dice(); break;
        case 1: (*bytes)[at] = telling[below(sizeof telling)]; break;
        case 2: bytes->resize(at); break;
        case 3: bytes->insert(bytes->begin() + (ptrdiff_t)at, length, (uint8_t)dice()); break;
        case 4:
            for (size_t i = at; i < bytes->size() && i < at + 4; ++i)
                (*bytes)[i] = telling[below(2) * 8];
            break;
        default:
            for (size_t i = at; i < bytes->size() && i < other.size() && i < at + length; ++i)
                (*bytes)[i] = other[i];
        }
    }
}

static void read(const Bytes& bytes)
{
    readFuzzInput(bytes.data(), bytes.size());
}

TEST(FuzzReaders, SeedsAndSeededDamageAreSurvived)
{
    const std::vector<Bytes> seeds = fuzzSeeds();
    for (const Bytes& seed : seeds) {
        for (size_t length = 0; length <= seed.size() && length < 300; ++length)
            read(Bytes(seed.begin(), seed.begin() + (ptrdiff_t)length));
        read(seed);
    }
    for (int round = 0; round < 40000; ++round) {
        Bytes bytes = seeds[below(seeds.size())];
        damage(&bytes, seeds[below(seeds.size())]);
        read(bytes);
    }
}

TEST(FuzzReaders, WhatWasOnceFoundIsSurvived)
{
    EXPECT_LT(0, readEveryFile(RETOUCH_FUZZ_REGRESSIONS));
}
