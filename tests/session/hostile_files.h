// Selection files that somebody has damaged or made up, the same ones for the same seed.
#pragma once

#include <random>

#include "tests/reference/tiff_reference.h"

typedef std::vector<uint8_t> FileBytes;

// One file after the other: cut short, bits turned over, counts, offsets and sizes that lie or agree with each
// other but not with the file, directories in odd places, both byte orders.
struct HostileFiles {
    std::mt19937 random;
    std::vector<FileBytes> sound;  // what the others are made from

    explicit HostileFiles(unsigned seed);
    FileBytes next();

private:
    unsigned below(size_t end) { return (unsigned)(random() % end); }
    void cut(FileBytes& bytes);
    void turnBits(FileBytes& bytes);
    void lieInEntries(FileBytes& bytes);
    void lieAboutSizes(FileBytes& bytes);
    void moveDirectory(FileBytes& bytes);
};

// Masks made to lead a walk along the border astray: single pixels, checkerboards, combs, a spiral, noise.
// Pixels and layout are sound.
std::vector<ReferenceSelection> selectionsWithOddMasks(int width, int height);
