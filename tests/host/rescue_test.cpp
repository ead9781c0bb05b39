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
    for (int look = 0; look < 2; ++look) {  // a change during a look counts for the next one
        DeleteFileW(name.c_str());
        Sleep(100);
    }
    EXPECT_FALSE(fileExists(name));
    bits[SIDE * SIDE * 3 - 1] ^= 99;
    EXPECT_TRUE(waitUntil([&] { return isSafe(); }));
    stopRescue();
    closeWorkRecord();
    EXPECT_TRUE(RemoveDirectoryW((folder.path + L"Retouch").c_str()));  // empty: the work has come to a good end
}
