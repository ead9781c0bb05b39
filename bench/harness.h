// Measuring one piece of work under a stable name.
#pragma once

#include <cstddef>
#include <cstdint>

// One key of the benchmark. The functions get the key's `variant`, so that one set serves several keys.
struct BenchKey {
    const char* name;
    const char* unit;  // of the printed value
    double work;       // amount of work in one run, in the unit without "/s"
    int variant;
    bool (*prepare)(int variant);    // makes the input; false: the key cannot run (release is still called)
    void (*reset)(int variant);      // before every run, untimed; may be null
    bool (*run)(int variant);        // what is timed; false when it failed
    uint32_t (*check)(int variant);  // CRC-32 of the result of the run just done; null: nothing to check
    void (*release)(int variant);
};

struct BenchGroup {
    const BenchKey* keys;
    size_t count;
};

// Runs the key once untimed (and takes its CRC), then times whole runs and prints the work divided by
// the median time. False when it could not be measured; the reason is on the error output.
bool runBenchKey(const BenchKey& key);

// Keeps the process on one core. False when the system refuses.
bool holdOnOneCore();
