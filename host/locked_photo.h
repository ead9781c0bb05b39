// A photo's packed bitmap in its memory block, locked as long as this lives.
#pragma once

#include <cstdint>
#include <windows.h>

struct LockedPhoto {
    LockedPhoto() = default;
    explicit LockedPhoto(HGLOBAL photo) { lock(photo); }
    ~LockedPhoto()
    {
        if (header) GlobalUnlock(block);
    }
    LockedPhoto(const LockedPhoto&) = delete;
    LockedPhoto& operator=(const LockedPhoto&) = delete;

    // For one that nothing was locked with before. A null photo stays unlocked.
    void lock(HGLOBAL photo)
    {
        block = photo;
        header = photo ? (BITMAPINFOHEADER*)GlobalLock(photo) : nullptr;
    }
    const uint8_t* bits() const { return (const uint8_t*)header + header->biSize; }

    HGLOBAL block = nullptr;
    BITMAPINFOHEADER* header = nullptr;  // null when it could not be locked
};
