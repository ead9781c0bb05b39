// The host's decoders with a sound photo of every kind, the beginnings of them, and what was once found. scripts/fuzz
// goes on from here. No file may make them take more than 64 MiB at once.
#include <gtest/gtest.h>

#include "tests/fuzz/photo_memory.h"
#include "tests/fuzz/readers.h"
#include "tests/fuzz/regression_files.h"

extern "C" const char* __asan_default_options()
{
    return "max_allocation_size_mb=64";
}

constexpr size_t CUTS = 12;

TEST(FuzzPhotos, SoundOnesAreReadAndTheirBeginningsAreSurvived)
{
    for (const Bytes& seed : fuzzSeeds()) {
        const int before = photosAccepted();
        readFuzzInput(seed.data(), seed.size());
        EXPECT_EQ(before + 1, photosAccepted()) << fuzzReaders[seed[0]].name;
        for (size_t cut = 0; cut < CUTS; ++cut)
            readFuzzInput(seed.data(), 1 + (seed.size() - 1) * cut / CUTS);
    }
}

TEST(FuzzPhotos, WhatWasOnceFoundIsSurvived)
{
    EXPECT_LT(0, readEveryFile(RETOUCH_PHOTO_REGRESSIONS));
}
