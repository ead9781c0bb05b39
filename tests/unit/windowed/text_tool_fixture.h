// The text tool's procedures over a hidden window, and beside them a model of the line that must stay equal.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "session/ground/session_record.h"
#include "tests/unit/windowed/text_model.h"

// A session's record, a hidden host window with an image, a canvas that is as large.
struct TextTool : testing::Test {
    SessionRecord record = {};
    HGLOBAL image = nullptr;
    HWND canvas = nullptr;
    TextModel model = {};

    void SetUp() override;
    void TearDown() override;
    void use(int width, int height, int lineHeight, int opacity = 100);
    void click(int x, int y);
    void key(UINT virtualKey);
    void character(UINT code);
    void type(const char* text);
    std::string line() const;
    void expectEqual();
    void expectImage();
    bool stampChanges();
};
