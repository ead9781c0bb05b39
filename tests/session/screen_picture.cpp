#include "tests/session/screen_picture.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

static bool writeBitmapFile(const std::string& path, const BITMAPINFOHEADER& header, const std::vector<uint8_t>& rows)
{
    BITMAPFILEHEADER file = {};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof header;
    file.bfSize = (DWORD)(file.bfOffBits + rows.size());
    FILE* out = fopen(path.c_str(), "wb");
    if (!out) return false;
    bool ok = fwrite(&file, sizeof file, 1, out) == 1 && fwrite(&header, sizeof header, 1, out) == 1 &&
              fwrite(rows.data(), rows.size(), 1, out) == 1;
    return fclose(out) == 0 && ok;
}

bool writeScreenPart(const std::string& path, const RECT& part)
{
    const int width = part.right - part.left, height = part.bottom - part.top;
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = 24;
    std::vector<uint8_t> rows((size_t)((width * 3 + 3) & ~3) * (size_t)height);

    const HDC screen = GetDC(nullptr);
    const HDC copy = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    const HGDIOBJ old = SelectObject(copy, bitmap);
    BitBlt(copy, 0, 0, width, height, screen, part.left, part.top, SRCCOPY);
    SelectObject(copy, old);
    const bool ok = GetDIBits(screen, bitmap, 0, (UINT)height, rows.data(), (BITMAPINFO*)&header, DIB_RGB_COLORS) != 0;
    DeleteObject(bitmap);
    DeleteDC(copy);
    ReleaseDC(nullptr, screen);
    return ok && writeBitmapFile(path, header, rows);
}

bool writeScreen(const std::string& path)
{
    return writeScreenPart(path, {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)});
}

void savePicture(const char* reason)
{
    static unsigned number;
    char program[MAX_PATH];
    GetModuleFileNameA(nullptr, program, sizeof program);
    std::string directory = program;
    directory = directory.substr(0, directory.find_last_of('\\') + 1) + "failures\\";
    CreateDirectoryA(directory.c_str(), nullptr);
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = test ? std::string(test->test_suite_name()) + "." + test->name() : "start";
    const std::string path = directory + name + "-" + std::to_string(++number) + ".bmp";
    if (writeScreen(path)) printf("screen (%s): %s\n", reason, path.c_str());
}
