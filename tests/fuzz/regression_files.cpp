#include "tests/fuzz/regression_files.h"

#include <dirent.h>

#include <cstdio>

#include "tests/fuzz/readers.h"

static bool readOneFile(const std::string& path)
{
    FILE* const file = fopen(path.c_str(), "rb");
    if (!file) return false;
    std::vector<uint8_t> bytes(1 << 20);
    bytes.resize(fread(bytes.data(), 1, bytes.size(), file));
    fclose(file);
    readFuzzInput(bytes.data(), bytes.size());
    return true;
}

int readEveryFile(const std::string& folder)
{
    DIR* const directory = opendir(folder.c_str());
    int files = 0;
    while (const dirent* const entry = directory ? readdir(directory) : nullptr)
        if (entry->d_name[0] != '.') files += readOneFile(folder + "/" + entry->d_name);
    if (directory) closedir(directory);
    return files;
}
