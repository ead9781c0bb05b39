#include "host/rescue.h"

#include "host/locked_photo.h"
#include "host/photo/photo_rows.h"
#include "host/work_record.h"

#include <algorithm>
#include <cstring>

constexpr DWORD EVERY_MINUTE = 60000;
constexpr size_t PIECE_SIZE = 2 << 20;

static HANDLE stopSign, worker;
static const BITMAPINFOHEADER* picture;

static size_t pictureSize(const void* packed)
{
    const BITMAPINFOHEADER* header = (const BITMAPINFOHEADER*)packed;
    return packedPhotoSize(header->biWidth, header->biHeight);
}

static bool stopped(DWORD milliseconds)
{
    return WaitForSingleObject(stopSign, milliseconds) == WAIT_OBJECT_0;
}

// Tells pictures apart. A few pauses keep it from being felt.
static uint64_t sumOf(const void* packed)
{
    const uint8_t* bytes = (const uint8_t*)packed;
    const size_t size = pictureSize(packed) / 8 * 8;
    uint64_t sums[4] = {1, 2, 3, 4};
    for (size_t at = 0; at < size; at += 8) {
        uint64_t word;
        memcpy(&word, bytes + at, 8);
        uint64_t& sum = sums[at / 8 % 4];
        sum = (sum ^ word) * 0x9E3779B97F4A7C15u;
        sum ^= sum >> 29;
        if (at % (8 * PIECE_SIZE) == 0 && at && stopped(1)) break;
    }
    return sums[0] ^ sums[1] * 3 ^ sums[2] * 5 ^ sums[3] * 7;
}

static DWORD waitingTime()
{
    wchar_t seconds[16];
    const DWORD length = GetEnvironmentVariableW(L"RETOUCH_RESCUE_SECONDS", seconds, 16);  // for tests: also "0.05"
    const double value = length > 0 && length < 16 ? wcstod(seconds, nullptr) : 0;
    return value > 0 && value < 60 ? (DWORD)(value * 1000) : EVERY_MINUTE;
}

static uint64_t processorTime()  // of this thread, in milliseconds
{
    FILETIME made, ended, kernel, user;
    if (!GetThreadTimes(GetCurrentThread(), &made, &ended, &kernel, &user)) return 0;
    const auto number = [](FILETIME time) { return (uint64_t)time.dwHighDateTime << 32 | time.dwLowDateTime; };
    return (number(kernel) + number(user)) / 10000;
}

// As long as it takes that what the last look and the last file cost is a fiftieth of the processor at most.
// *spent: the thread's time at the last call.
static DWORD pauseUntilNext(uint64_t* spent)
{
    const uint64_t now = processorTime(), cost = now - *spent;
    *spent = now;
    return std::max(waitingTime(), (DWORD)std::min<uint64_t>(cost * 50, MAXLONG));
}

static DWORD WINAPI keepSafe(void*)
{
    uint64_t written = sumOf(picture);  // what the photo's file has already needs no rescue
    uint64_t spent = 0;
    while (!stopped(pauseUntilNext(&spent))) {
        const uint64_t now = sumOf(picture);
        if (now != written && writeRescueFile(rescueFileName(), picture, true)) written = now;
    }
    return 0;
}

static HANDLE createPrivate(const std::wstring& path)
{
    // The rights of the folder, which is the user's own, are what a private photo needs at least.
    return CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

static bool writePart(HANDLE file, const void* bytes, size_t size)
{
    DWORD written = 0;
    return WriteFile(file, bytes, (DWORD)size, &written, nullptr) && written == size;
}

bool writeRescueFile(const std::wstring& path, const void* packed, bool patient)
{
    if (path.empty()) return false;
    const std::wstring temporary = path.substr(0, path.rfind(L'.')) + L".tmp";
    HANDLE file = createPrivate(temporary);
    if (file == INVALID_HANDLE_VALUE) return false;
    const uint8_t* bytes = (const uint8_t*)packed;
    const size_t size = pictureSize(packed);
    BITMAPFILEHEADER head = {0x4D42, (DWORD)(sizeof head + size), 0, 0, sizeof head + sizeof(BITMAPINFOHEADER)};
    bool done = writePart(file, &head, sizeof head);
    for (size_t at = 0; at < size && done; at += PIECE_SIZE) {
        done = writePart(file, bytes + at, std::min(PIECE_SIZE, size - at));
        if (patient && stopped(2)) done = false;
    }
    CloseHandle(file);
    done = done && MoveFileExW(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING);
    if (!done) DeleteFileW(temporary.c_str());
    return done;
}

void startRescue(HGLOBAL image)
{
    // The block stays where it is: the library neither frees nor resizes it.
    picture = LockedPhoto(image).header;
    stopSign = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    worker = stopSign && picture ? CreateThread(nullptr, 0, keepSafe, nullptr, 0, nullptr) : nullptr;
    if (worker) SetThreadPriority(worker, THREAD_PRIORITY_LOWEST);
}

void stopRescue()
{
    if (worker) {
        SetEvent(stopSign);
        WaitForSingleObject(worker, INFINITE);
        CloseHandle(worker);
    }
    if (stopSign) CloseHandle(stopSign);
    worker = stopSign = nullptr;
}
