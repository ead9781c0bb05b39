// Writing files so that an existing one is replaced whole or not at all.
#pragma once

#include <cstddef>
#include <string>

// Writes the bytes to a new file in the same folder, flushes it to the disk and renames it to path.
// With replace false an existing file makes it fail. On failure nothing is left behind and *error is the
// system's error code.
bool writeWholeFile(const std::wstring& path, const void* bytes, size_t size, bool replace, unsigned long* error);

// Tries whether a file could be made in the folder of path; nothing is left behind.
bool folderIsWritable(const std::wstring& path, unsigned long* error);

bool fileExists(const std::wstring& path);

// Whether two names lead to one existing file.
bool sameFile(const std::wstring& one, const std::wstring& other);
