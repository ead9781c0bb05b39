// Everything of the project that reads bytes from outside and knows no windows, for fuzzing: each reader gets arbitrary
// bytes, and ends the program when what it gives back breaks its promise. The sanitizers see the rest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

struct FuzzReader {
    const char* name;
    void (*read)(const uint8_t* bytes, size_t size);
    std::vector<std::vector<uint8_t>> (*seeds)();
};

extern const FuzzReader fuzzReaders[];
extern const int fuzzReaderCount;

// The first byte chooses the reader, the others are its bytes.
void readFuzzInput(const uint8_t* bytes, size_t size);
// Sound inputs for every reader, each with its first byte.
std::vector<std::vector<uint8_t>> fuzzSeeds();
