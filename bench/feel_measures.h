// The clock, the pointer and the screen, for whoever measures what a hand feels; none of it waits for anything.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <vector>

constexpr double LIMIT_MS = 20000;

double millisecondsNow();
double medianOf(std::vector<double> values);  // -1 of none

// Input as the system has it. Positions are screen pixels.
void sendMouse(DWORD flags, POINT at = {0, 0});
void sendMove(POINT screen);
void sendKey(WORD key, DWORD flags);

// The pixels around a point of the screen.
std::vector<uint8_t> around(POINT screen);

// From the action until those pixels change; a failure, and -1, when they do not.
template <typename Action>
double untilPixelsChange(POINT screen, Action action)
{
    const std::vector<uint8_t> before = around(screen);
    const double start = millisecondsNow();
    action();
    while (around(screen) == before)
        if (millisecondsNow() - start > LIMIT_MS) {
            ADD_FAILURE() << "nothing changes at " << screen.x << ", " << screen.y;
            return -1;
        }
    return millisecondsNow() - start;
}

double processorMilliseconds();  // of this process, since its start

// Bytes of memory that this process takes now, and the most that it ever took.
struct MemoryInUse {
    size_t resting, peak;
};

MemoryInUse memoryNow();
