// A bitmap in a memory block, locked as long as this lives.
#pragma once

#include <windows.h>

struct LockedDib {
    explicit LockedDib(HGLOBAL bitmap) : block(bitmap), header((const BITMAPINFOHEADER*)GlobalLock(bitmap)) {}
    ~LockedDib()
    {
        if (header) GlobalUnlock(block);
    }
    LockedDib(const LockedDib&) = delete;
    LockedDib& operator=(const LockedDib&) = delete;

    HGLOBAL const block;
    const BITMAPINFOHEADER* const header;  // null when it could not be locked
};
