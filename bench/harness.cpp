#include "bench/harness.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include <windows.h>

constexpr double LEAST_SECONDS = 0.25, MANY_SECONDS = 1.0;
constexpr size_t LEAST_RUNS = 5, LEAST_LONG_RUNS = 2;

static double secondsNow()
{
    LARGE_INTEGER count, frequency;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return (double)count.QuadPart / (double)frequency.QuadPart;
}

static bool enoughRuns(size_t runs, double seconds)
{
    return (runs >= LEAST_RUNS && seconds >= LEAST_SECONDS) || (runs >= LEAST_LONG_RUNS && seconds > MANY_SECONDS);
}

static double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

static bool resetAndRun(const BenchKey& key, double* seconds)
{
    if (key.reset) key.reset(key.variant);
    const double begin = secondsNow();
    const bool done = key.run(key.variant);
    *seconds = secondsNow() - begin;
    return done;
}

static bool measure(const BenchKey& key)
{
    double seconds = 0, total = 0;
    if (!key.prepare(key.variant) || !resetAndRun(key, &seconds)) return false;
    const uint32_t check = key.check ? key.check(key.variant) : 0;
    std::vector<double> runs;
    while (!enoughRuns(runs.size(), total)) {
        if (!resetAndRun(key, &seconds)) return false;
        runs.push_back(seconds);
        total += seconds;
    }
    printf("BENCH %s %.3f %s\n", key.name, key.work / medianOf(runs), key.unit);
    if (key.check) printf("CHECK %s %08x\n", key.name, (unsigned)check);
    fflush(stdout);
    return true;
}

bool runBenchKey(const BenchKey& key)
{
    const bool measured = measure(key);
    key.release(key.variant);
    if (!measured) fprintf(stderr, "%s: could not be measured\n", key.name);
    return measured;
}

bool holdOnOneCore()
{
    DWORD_PTR allowed = 0, system = 0;
    if (!GetProcessAffinityMask(GetCurrentProcess(), &allowed, &system) || !allowed) return false;
    return SetProcessAffinityMask(GetCurrentProcess(), allowed & (~allowed + 1)) != 0;
}
