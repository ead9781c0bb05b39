// kovbench [key ...]: runs the keys that are named (all without arguments) and prints for each
//
//     BENCH <key> <value> <unit>
//     CHECK <key> <CRC-32 of the result>
//
// Unknown keys are ignored. kovbench --list prints each key's name, its unit and what it measures. The exit code is 1
// when a key could not be measured.
#include <cstdio>
#include <cstring>

#include "bench/key_texts.h"
#include "bench/keys.h"

static bool wanted(const char* name, int argc, char** argv)
{
    for (int k = 1; k < argc; ++k)
        if (strcmp(name, argv[k]) == 0) return true;
    return argc < 2;
}

static int listKeys()
{
    int undescribed = 0;
    for (const BenchGroup* group : benchGroups) {
        for (size_t k = 0; k < group->count; ++k) {
            const BenchKey& key = group->keys[k];
            const char* const text = textOfKey(key.name);
            printf("%-32s %-11s %s\n", key.name, key.unit, text ? text : "?");
            undescribed += !text;
        }
    }
    return undescribed ? 1 : 0;
}

int main(int argc, char** argv)
{
    if (argc == 2 && strcmp(argv[1], "--list") == 0) return listKeys();
    if (!holdOnOneCore()) fprintf(stderr, "the process could not be held on one core\n");
    bool allMeasured = true;
    for (const BenchGroup* group : benchGroups)
        for (size_t k = 0; k < group->count; ++k)
            if (wanted(group->keys[k].name, argc, argv)) allMeasured &= runBenchKey(group->keys[k]);
    return allMeasured ? 0 : 1;
}
