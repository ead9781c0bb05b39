// A session without its host: the record, a host window with the image as its property, and the real
// canvas. Presses, moves and releases are called directly; the pointer is not needed.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "session/ground/session_record.h"
#include "tests/unit/pure/guarded_image.h"

// What the bytes behind the pixels of a row are filled with.
constexpr uint8_t ROW_PADDING = 0xCC;

// A packed 24-bit bitmap of the picture, padding bytes ROW_PADDING.
HGLOBAL bitmapOf(const reference::Picture& picture);
// Same size, same pixels, padding untouched.
bool showsPicture(HGLOBAL image, const reference::Picture& picture);
COLORREF colorrefOf(reference::Pixel pixel);

struct SessionFixture : testing::Test {
    HWND host = nullptr;  // stands for the host dialog
    HGLOBAL image = nullptr;

    void TearDown() override { close(); }

    // Starts a session over the picture. `client` is the canvas's size on the screen; without one it is
    // the picture's own. The windows are hidden and the outline at the pointer is off, unless `visible`.
    bool open(const reference::Picture& picture, SIZE client = {0, 0}, bool visible = false);
    bool openOn(HGLOBAL bitmap, SIZE client, bool visible);
    void close();  // as the session's end; frees everything
};

// The library's module in a directory of its own: its resources, and a place for its settings file.
struct ModuleHome {
    std::string directory;  // with a backslash at the end
    HMODULE module;
    HINSTANCE before;  // moduleInstance until now
};

bool moveModuleHome(ModuleHome* home);
void leaveModuleHome(ModuleHome* home);  // also removes the directory

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& content);
