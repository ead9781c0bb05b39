// The original of a large image, which is copied on a thread of its own.
#include "image/original_image.h"

#include <gtest/gtest.h>

#include <cstring>

#include "session/ground/session_extras.h"
#include "tests/session/import_patch.h"
#include "tests/unit/windowed/session_fixture.h"

namespace {

struct OriginalImage : SessionFixture {
    std::vector<uint8_t> photo;

    std::vector<uint8_t> bytesOfImage()
    {
        const uint8_t* const bytes = (const uint8_t*)GlobalLock(image);
        const std::vector<uint8_t> copy(bytes, bytes + GlobalSize(image));
        GlobalUnlock(image);
        return copy;
    }

    // Large enough for a thread.
    void SetUp() override
    {
        ASSERT_TRUE(open(plainPicture(720, 500, {1, 2, 3})));
        uint8_t* const bytes = (uint8_t*)GlobalLock(image);
        for (size_t i = sizeof(BITMAPINFOHEADER); i < GlobalSize(image); ++i)
            bytes[i] = (uint8_t)(i * 2654435761u >> 24);
        GlobalUnlock(image);
        photo = bytesOfImage();
        releaseOriginal();
    }

    void changeImage()
    {
        memset((uint8_t*)GlobalLock(image) + sizeof(BITMAPINFOHEADER), 0x77, 3000);
        GlobalUnlock(image);
    }
};

ImportPatch threadPatch;
LPTHREAD_START_ROUTINE begun;

DWORD WINAPI beginLate(void* parameter)
{
    Sleep(100);
    return begun(parameter);
}

HANDLE WINAPI createLateThread(SECURITY_ATTRIBUTES* security, SIZE_T stack, LPTHREAD_START_ROUTINE routine,
                               void* parameter, DWORD flags, DWORD* id)
{
    begun = routine;
    return ((decltype(&CreateThread))threadPatch.before)(security, stack, beginLate, parameter, flags, id);
}

HANDLE WINAPI createNoThread(SECURITY_ATTRIBUTES*, SIZE_T, LPTHREAD_START_ROUTINE, void*, DWORD, DWORD*)
{
    return nullptr;
}

}  // namespace

TEST_F(OriginalImage, IsGivenBackWhole)
{
    ASSERT_TRUE(keepOriginal(image));
    EXPECT_NE(nullptr, sessionExtras.kept.copying);
    completeOriginal();
    EXPECT_EQ(nullptr, sessionExtras.kept.copying);
    changeImage();
    giveBackOriginal();
    EXPECT_EQ(photo, bytesOfImage());
}

TEST_F(OriginalImage, WhatIsNotCopiedYetIsWaitedFor)
{
    ASSERT_TRUE(patchImport(&threadPatch, GetModuleHandleA(nullptr), "CreateThread", (void*)createLateThread));
    ASSERT_TRUE(keepOriginal(image));
    giveBackOriginal();
    EXPECT_EQ(nullptr, sessionExtras.kept.copying);
    EXPECT_EQ(photo, bytesOfImage());
    releaseOriginal();
    ASSERT_TRUE(keepOriginal(image));
    releaseOriginal();  // the thread must be gone before the blocks are
    undoPatch(&threadPatch);
    EXPECT_EQ(nullptr, sessionExtras.kept.copying);
    EXPECT_EQ(photo, bytesOfImage());
}

TEST_F(OriginalImage, IsKeptWithoutAThreadToo)
{
    ASSERT_TRUE(patchImport(&threadPatch, GetModuleHandleA(nullptr), "CreateThread", (void*)createNoThread));
    const bool kept = keepOriginal(image);
    undoPatch(&threadPatch);
    ASSERT_TRUE(kept);
    changeImage();
    giveBackOriginal();
    EXPECT_EQ(photo, bytesOfImage());
}
