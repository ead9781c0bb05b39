// Writing files so that an existing one is replaced whole or not at all.
#pragma once

#include <cstddef>
#include <string>

// Makes a new, empty file in the folder of path, with the access rights of the file at path when there is one.
// On failure *error is the system's error code.
bool createBeside(const std::wstring& path, std::wstring* temporary, unsigned long* error);

// Gives the finished temporary file the name path, in one step. With replace false an existing file makes it
// fail. A file with further names (hard links) keeps them: then its content is replaced. On failure both files
// are there as before and *error is the system's error code.
bool putInPlace(const std::wstring& temporary, const std::wstring& path, bool replace, unsigned long* error);

// Whether putInPlace would write into the existing file, which, unlike a new name, can be interrupted.
bool hasFurtherNames(const std::wstring& path);

// Writes the content of one file over that of another.
bool copyContent(const std::wstring& from, const std::wstring& to, unsigned long* error);

// Tries whether a file of that name could be made; nothing is left behind. An existing one is not touched: then
// only its folder is tried.
bool canBeWritten(const std::wstring& path, unsigned long* error);

bool fileExists(const std::wstring& path);

// The file that a symbolic link leads to; any other path as it is. Folders among its parts may be links.
std::wstring fileBehind(const std::wstring& path);

// Whether two names lead to one existing file.
bool sameFile(const std::wstring& one, const std::wstring& other);
