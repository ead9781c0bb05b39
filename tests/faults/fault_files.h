// What lies in the library's directory: the settings and the stored selections. A directory's name ends with a
// backslash.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

typedef std::map<std::string, std::string> Settings;
typedef std::map<std::string, std::vector<uint8_t>> StoredFiles;

struct UserFiles {
    std::vector<uint8_t> settingsFile;
    Settings settings;  // as they stand in it
    StoredFiles library;
};

std::vector<std::string> filesIn(const std::string& directory);
Settings settingsIn(const std::string& directory);
StoredFiles libraryIn(const std::string& directory);

UserFiles userFilesIn(const std::string& directory);
// All settings and selections become these again; other selections are deleted.
void restoreFiles(const std::string& directory, const UserFiles& files);
