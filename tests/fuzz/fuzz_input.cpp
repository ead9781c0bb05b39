#include "tests/fuzz/readers.h"

void readFuzzInput(const uint8_t* bytes, size_t size)
{
    if (size > 0) fuzzReaders[bytes[0] % fuzzReaderCount].read(bytes + 1, size - 1);
}

std::vector<std::vector<uint8_t>> fuzzSeeds()
{
    std::vector<std::vector<uint8_t>> all;
    for (int reader = 0; reader < fuzzReaderCount; ++reader) {
        for (std::vector<uint8_t>& seed : fuzzReaders[reader].seeds()) {
            seed.insert(seed.begin(), (uint8_t)reader);
            all.push_back(seed);
        }
    }
    return all;
}
