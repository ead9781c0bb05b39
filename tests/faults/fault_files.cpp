#include "tests/faults/fault_files.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>

typedef std::vector<uint8_t> Bytes;

static std::string settingsPath(const std::string& directory)
{
    return directory + "KOVRTCH.INI";
}

static std::string libraryPath(const std::string& directory)
{
    return directory + "SELDIB\\";
}

static Bytes readFile(const std::string& path)
{
    Bytes bytes;
    if (FILE* file = fopen(path.c_str(), "rb")) {
        uint8_t part[4096];
        for (size_t got; (got = fread(part, 1, sizeof part, file)) > 0;)
            bytes.insert(bytes.end(), part, part + got);
        fclose(file);
    }
    return bytes;
}

static void writeFile(const std::string& path, const Bytes& bytes)
{
    if (FILE* file = fopen(path.c_str(), "wb")) {
        fwrite(bytes.data(), 1, bytes.size(), file);
        fclose(file);
    }
}

std::vector<std::string> filesIn(const std::string& directory)
{
    std::vector<std::string> names;
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA((directory + "*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return names;
    do
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) names.push_back(found.cFileName);
    while (FindNextFileA(search, &found));
    FindClose(search);
    return names;
}

// The system keeps what it has read or is to write.
static void writeCachedSettings(const std::string& directory)
{
    WritePrivateProfileStringA(nullptr, nullptr, nullptr, settingsPath(directory).c_str());
}

Settings settingsIn(const std::string& directory)
{
    writeCachedSettings(directory);
    const Bytes bytes = readFile(settingsPath(directory));
    const std::string text(bytes.begin(), bytes.end());
    Settings settings;
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find_first_of("\r\n", at), text.size());
        const std::string line = text.substr(at, end - at);
        const size_t equals = line.find('=');
        if (equals != std::string::npos) settings[line.substr(0, equals)] = line.substr(equals + 1);
        at = end + 1;
    }
    return settings;
}

StoredFiles libraryIn(const std::string& directory)
{
    const std::string path = libraryPath(directory);
    StoredFiles files;
    for (const std::string& name : filesIn(path))
        files[name] = readFile(path + name);
    return files;
}

UserFiles userFilesIn(const std::string& directory)
{
    writeCachedSettings(directory);
    return {readFile(settingsPath(directory)), settingsIn(directory), libraryIn(directory)};
}

void restoreFiles(const std::string& directory, const UserFiles& files)
{
    writeCachedSettings(directory);
    writeFile(settingsPath(directory), files.settingsFile);
    const std::string path = libraryPath(directory);
    for (const std::string& name : filesIn(path))
        if (!files.library.count(name)) DeleteFileA((path + name).c_str());
    for (const auto& file : files.library)
        writeFile(path + file.first, file.second);
}
