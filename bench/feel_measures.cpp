#include "bench/feel_measures.h"

#include <algorithm>

#include "tests/session/screen_part.h"

#include <psapi.h>

double millisecondsNow()
{
    LARGE_INTEGER count, frequency;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return 1000.0 * (double)count.QuadPart / (double)frequency.QuadPart;
}

double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? -1 : values[values.size() / 2];
}

// ---- input, without waiting for anything

void sendMouse(DWORD flags, POINT at)
{
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    const LONG width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    input.mi.dx = (at.x * 65536 + width - 1) / width;
    input.mi.dy = (at.y * 65536 + height - 1) / height;
    SendInput(1, &input, sizeof input);
}

void sendKey(WORD key, DWORD flags)
{
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.dwFlags = flags;
    SendInput(1, &input, sizeof input);
}

void sendMove(POINT screen)
{
    sendMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, screen);
}

// ---- the screen

std::vector<uint8_t> around(POINT screen)
{
    return screenPartNow({screen.x - 3, screen.y - 3, screen.x + 4, screen.y + 4}).bytes;
}

// ---- the process

double processorMilliseconds()
{
    FILETIME made, ended, kernel, user;
    GetProcessTimes(GetCurrentProcess(), &made, &ended, &kernel, &user);
    const auto whole = [](FILETIME time) { return ((ULONGLONG)time.dwHighDateTime << 32 | time.dwLowDateTime) / 1e4; };
    return whole(kernel) + whole(user);
}

MemoryInUse memoryNow()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return {counters.WorkingSetSize, counters.PeakWorkingSetSize};
}
