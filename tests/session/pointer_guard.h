// Keeps the display's own pointer out of a test. Wine warps that pointer along with a move and hears of it a little
// later, once at the old and once at the new place: on a busy machine the button then goes down where the pointer was
// before, or what was left stays hot. And a program beside it that gives back a capture sends the pointer where it was
// a moment ago, so tests with a pointer run alone.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

// At the right border, where no test opens a window.
POINT pointerRest();
void sendPointerToRest();

// From now on, and until the program ends, only injected input passes; and the pointer goes to its rest. Fails where
// ctest has been told to run other tests beside this one (RETOUCH_ALONE).
void guardPointer();
bool pointerIsGuarded();

// For all tests of a program: testing::AddGlobalTestEnvironment(new GuardedPointer).
struct GuardedPointer : testing::Environment {
    void SetUp() override { guardPointer(); }
};

// For one test: what runs after it meets no pointer.
struct PointerOfTest {
    PointerOfTest() { guardPointer(); }
    ~PointerOfTest() { sendPointerToRest(); }
};
