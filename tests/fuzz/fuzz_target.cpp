// The readers under a coverage-guided fuzzer (scripts/fuzz). With RETOUCH_FUZZ_SEEDS set to a folder, sound inputs are
// written there first.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/fuzz/readers.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    const char* const folder = getenv("RETOUCH_FUZZ_SEEDS");
    int number = 0;
    if (!folder) return 0;
    for (const std::vector<uint8_t>& seed : fuzzSeeds()) {
        FILE* const file = fopen((std::string(folder) + "/seed-" + std::to_string(number++)).c_str(), "wb");
        if (!file) continue;
        fwrite(seed.data(), 1, seed.size(), file);
        fclose(file);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    readFuzzInput(bytes, size);
    return 0;
}
