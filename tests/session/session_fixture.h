// What every session test starts with: the library in a directory of its own, a host, a photo.
#pragma once

#include <gtest/gtest.h>

#include "tests/session/pointer.h"
#include "tests/session/stroke_replay.h"

struct SessionTest : testing::Test {
    Library library = {};
    Host host = {};
    HostImage photo = {};
    RECT dialogRect = {};
    POINT palettePos = {1100, 40};

    void SetUp() override;
    void TearDown() override;

    // A photo of the given size, and a dialog rectangle whose client area is clientWidth x clientHeight
    // (0: the photo's own size).
    void usePhoto(int width, int height, int clientWidth = 0, int clientHeight = 0);

    CallArguments arguments();
    bool open() { return openSession(&host, arguments()); }

    // Clicks Save or Close and checks result, leftovers and, after Close, the bytes against `before`.
    void saveAndCheck();
    void closeAndCheck(const std::vector<uint8_t>& before);
    void checkReturned(int result);
};

RECT dialogRectForClient(int left, int top, int clientWidth, int clientHeight);

// Clicks the palette's control and notes the change in the replay.
bool chooseBrush(Host* host, StrokeReplay* replay);
bool chooseEdge(Host* host, StrokeReplay* replay, bool soft);
bool chooseShape(Host* host, StrokeReplay* replay, int shape);
// Pages the opacity bar down the given number of times.
bool lowerOpacity(Host* host, StrokeReplay* replay, int pages);
