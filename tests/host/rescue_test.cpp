#include "host/locked_photo.h"
#include "host/photo/photo_rows.h"
#include "host/rescue.h"
#include "host/safe_file.h"
#include "host/work_record.h"
#include "tests/host/test_folder.h"

#include <functional>
#include <gtest/gtest.h>

constexpr int SIDE = 40;

// A picture that is kept safe every 20 milliseconds.
struct HostRescue : testing::Test {
    TestFolder folder;
    HGLOBAL image = GlobalAlloc(GHND, packedPhotoSize(SIDE, SIDE));
    uint8_t* bits = nullptr;

    void SetUp() override
    {
        SetEnvironmentVariableW(L"RETOUCH_RESCUE_FOLDER", folder.path.c_str());
        SetEnvironmentVariableW(L"RETOUCH_RESCUE_SECONDS", L"0.02");
        BITMAPINFOHEADER* header = (BITMAPINFOHEADER*)GlobalLock(image);
        *header = {sizeof *header, SIDE, SIDE, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
        bits = (uint8_t*)(header + 1);
        openWorkRecord(folder.path + L"photo.jpg");
        startRescue(image);
    }
    void TearDown() override
    {
        SetEnvironmentVariableW(L"RETOUCH_RESCUE_FOLDER", nullptr);
        SetEnvironmentVariableW(L"RETOUCH_RESCUE_SECONDS", nullptr);
        GlobalUnlock(image);
        GlobalFree(image);
    }
    static bool waitUntil(const std::function<bool()>& holds)
    {
        const ULONGLONG end = GetTickCount64() + 60000;
        while (!holds() && GetTickCount64() < end)
            Sleep(5);
        return holds();
    }
    bool isSafe() const
    {
        const std::vector<uint8_t> file = readBytes(rescueFileName());
        return file.size() == 14 + packedPhotoSize(SIDE, SIDE) && std::equal(file.begin() + 54, file.end(), bits);
    }
};

TEST_F(HostRescue, WritesWhatHasChangedAndOnlyThat)
{
    const std::wstring name = rescueFileName();
    Sleep(100);  // some looks at what has not changed
    EXPECT_FALSE(fileExists(name));
    ASSERT_TRUE(waitUntil([&] { return ++bits[7], fileExists(name); }));  // the first look may come late
    ASSERT_TRUE(waitUntil([&] { return isSafe(); }));
    // A change during a look counts for the next one, whenever that comes; then there is quiet.
    EXPECT_TRUE(waitUntil([&] {
        DeleteFileW(name.c_str());
        Sleep(200);  // some looks
        return !fileExists(name);
    }));
    bits[SIDE * SIDE * 3 - 1] ^= 99;
    EXPECT_TRUE(waitUntil([&] { return isSafe(); }));
    stopRescue();
    closeWorkRecord();
    EXPECT_TRUE(RemoveDirectoryW((folder.path + L"Retouch").c_str()));  // empty: the work has come to a good end
}

// What a program leaves that does not come to its end: its record, in UTF-16, and the files that it names.
struct HostAbandonedWork : testing::Test {
    TestFolder folder;
    const std::wstring records = folder.path + L"Retouch\\", temporary = folder.path + L"retouch-7-0.tmp",
                       target = folder.path + L"two names.jpg";
    const std::vector<uint8_t> half = {1, 2, 3}, whole = {4, 5, 6, 7};

    void SetUp() override
    {
        SetEnvironmentVariableW(L"RETOUCH_RESCUE_FOLDER", folder.path.c_str());
        CreateDirectoryW(records.c_str(), nullptr);
        writeBytes(temporary, whole);
        writeBytes(target, half);
    }
    void TearDown() override { SetEnvironmentVariableW(L"RETOUCH_RESCUE_FOLDER", nullptr); }
    void leaveRecord(const std::wstring& copiedOver)
    {
        const std::wstring text = L"Z:\\photo.jpg\n" + temporary + L"\n" + copiedOver + L"\n";
        writeBytes(records + L"7-1.work", {(const uint8_t*)text.data(), (const uint8_t*)(text.data() + text.size())});
    }
};

TEST_F(HostAbandonedWork, WhatWasHalfWrittenGoes)
{
    leaveRecord(L"");
    writeBytes(records + L"7-1.tmp", half);
    EXPECT_TRUE(findAbandonedWork().empty());
    EXPECT_FALSE(fileExists(temporary));
    EXPECT_EQ(readBytes(target), half);
    EXPECT_TRUE(RemoveDirectoryW(records.c_str()));
}

// A file with further names is written over, which can be cut off; then the finished one is still beside it.
TEST_F(HostAbandonedWork, WhatWasFinishedIsBroughtToItsPlace)
{
    leaveRecord(target);
    EXPECT_TRUE(findAbandonedWork().empty());
    EXPECT_FALSE(fileExists(temporary));
    EXPECT_EQ(readBytes(target), whole);
    EXPECT_TRUE(RemoveDirectoryW(records.c_str()));
}

TEST_F(HostAbandonedWork, APictureIsOfferedUntilItIsForgotten)
{
    leaveRecord(L"");
    writeBytes(records + L"7-1.bmp", whole);
    for (int start = 0; start < 2; ++start) {
        const std::vector<AbandonedWork> found = findAbandonedWork();
        ASSERT_EQ(found.size(), 1u);
        EXPECT_EQ(found[0].photo, L"Z:\\photo.jpg");
        EXPECT_EQ(readBytes(found[0].picture), whole);
        if (start == 1) forgetAbandonedWork(found[0]);
    }
    EXPECT_TRUE(findAbandonedWork().empty());
    EXPECT_TRUE(RemoveDirectoryW(records.c_str()));
}
