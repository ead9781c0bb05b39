// A fresh folder for one test, with everything in it gone at the end.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct TestFolder {
    std::wstring path;  // with a separator at the end
    TestFolder();
    ~TestFolder();
};

std::vector<uint8_t> readBytes(const std::wstring& path);
void writeBytes(const std::wstring& path, const std::vector<uint8_t>& bytes);
std::vector<std::wstring> namesIn(const TestFolder& folder);
