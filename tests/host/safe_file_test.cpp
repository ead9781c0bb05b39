#include "host/file_names.h"
#include "host/safe_file.h"
#include "tests/host/test_folder.h"

#include <gtest/gtest.h>
#include <windows.h>

static const std::vector<uint8_t> oldBytes = {1, 2, 3}, newBytes = {9, 8, 7, 6};

// As a save does it.
static bool write(const std::wstring& path, bool replace, unsigned long* error)
{
    std::wstring temporary;
    if (!createBeside(path, &temporary, error)) return false;
    writeBytes(temporary, newBytes);
    if (putInPlace(temporary, path, replace, error)) return true;
    DeleteFileW(temporary.c_str());
    return false;
}

TEST(HostSafeFile, WritesANewFileAndNothingElse)
{
    TestFolder folder;
    unsigned long error;
    EXPECT_TRUE(write(folder.path + L"ż.png", false, &error));
    EXPECT_EQ(readBytes(folder.path + L"ż.png"), newBytes);
    EXPECT_EQ(namesIn(folder).size(), 1u);
}

TEST(HostSafeFile, ReplacesOnlyWhenAsked)
{
    TestFolder folder;
    const std::wstring name = folder.path + L"a.png";
    writeBytes(name, oldBytes);
    unsigned long error = 0;
    EXPECT_FALSE(write(name, false, &error));
    EXPECT_NE(error, 0u);
    EXPECT_EQ(readBytes(name), oldBytes);
    EXPECT_EQ(namesIn(folder).size(), 1u);
    EXPECT_TRUE(write(name, true, &error));
    EXPECT_EQ(readBytes(name), newBytes);
    EXPECT_EQ(namesIn(folder).size(), 1u);
}

TEST(HostSafeFile, LeavesNothingBehindWhenItCannotRename)
{
    TestFolder folder;
    CreateDirectoryW((folder.path + L"a.png").c_str(), nullptr);
    unsigned long error = 0;
    EXPECT_FALSE(write(folder.path + L"a.png", true, &error));
    EXPECT_NE(error, 0u);
    EXPECT_EQ(namesIn(folder).size(), 1u);
}

TEST(HostSafeFile, AFileHeldOpenStaysAsItIs)
{
    TestFolder folder;
    const std::wstring name = folder.path + L"a.png";
    writeBytes(name, oldBytes);
    HANDLE holder = CreateFileW(name.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(holder, INVALID_HANDLE_VALUE);
    unsigned long error = 0;
    EXPECT_FALSE(write(name, true, &error));
    EXPECT_NE(error, 0u);
    CloseHandle(holder);
    EXPECT_EQ(readBytes(name), oldBytes);
    EXPECT_EQ(namesIn(folder).size(), 1u);
    EXPECT_TRUE(write(name, true, &error));
    EXPECT_EQ(readBytes(name), newBytes);
}

TEST(HostSafeFile, FailsInAFolderThatIsNotThere)
{
    TestFolder folder;
    unsigned long error = 0;
    EXPECT_FALSE(write(folder.path + L"none\\a.png", true, &error));
    EXPECT_NE(error, 0u);
    EXPECT_FALSE(canBeWritten(folder.path + L"none\\a.png", &error));
    EXPECT_TRUE(canBeWritten(folder.path + L"a.png", &error));
    EXPECT_FALSE(canBeWritten(folder.path + std::wstring(252, L'n') + L".png", &error));
    EXPECT_TRUE(namesIn(folder).empty());
}

static std::vector<uint8_t> accessListOf(const std::wstring& path)
{
    DWORD size = 0;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<uint8_t> descriptor(size);
    EXPECT_TRUE(GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), size, &size));
    return descriptor;
}

// Nobody but its owner may do anything with it.
static void makePrivate(const std::wstring& path)
{
    uint8_t owner[512], list[512];
    DWORD size;
    SECURITY_DESCRIPTOR descriptor;
    PSID user = nullptr;
    BOOL byDefault;
    ASSERT_TRUE(GetFileSecurityW(path.c_str(), OWNER_SECURITY_INFORMATION, owner, sizeof owner, &size));
    ASSERT_TRUE(GetSecurityDescriptorOwner(owner, &user, &byDefault));
    ASSERT_TRUE(InitializeAcl((ACL*)list, sizeof list, ACL_REVISION));
    ASSERT_TRUE(AddAccessAllowedAce((ACL*)list, ACL_REVISION, FILE_ALL_ACCESS, user));
    ASSERT_TRUE(InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION));
    ASSERT_TRUE(SetSecurityDescriptorDacl(&descriptor, TRUE, (ACL*)list, FALSE));
    ASSERT_TRUE(SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, &descriptor));
}

TEST(HostSafeFile, TheAccessListOfAFileStays)
{
    TestFolder folder;
    const std::wstring name = folder.path + L"a.png", other = folder.path + L"b.png";
    writeBytes(name, oldBytes);
    writeBytes(other, oldBytes);
    makePrivate(name);
    const std::vector<uint8_t> before = accessListOf(name);
    EXPECT_NE(before, accessListOf(other));
    unsigned long error;
    EXPECT_TRUE(write(name, true, &error));
    EXPECT_EQ(readBytes(name), newBytes);
    EXPECT_EQ(accessListOf(name), before);
}

TEST(HostSafeFile, FurtherNamesOfAFileStayItsNames)
{
    TestFolder folder;
    const std::wstring name = folder.path + L"a.png", other = folder.path + L"b.png";
    writeBytes(name, std::vector<uint8_t>(100, 1));
    ASSERT_TRUE(CreateHardLinkW(other.c_str(), name.c_str(), nullptr));
    EXPECT_TRUE(hasFurtherNames(name));
    unsigned long error;
    EXPECT_TRUE(write(name, true, &error));
    EXPECT_EQ(readBytes(other), newBytes);
    EXPECT_TRUE(sameFile(name, other));
    EXPECT_EQ(namesIn(folder).size(), 2u);
}

// What Wine lacks, its system has: `command` of it runs in the folder, until the name exists or does not.
static bool runUntil(const TestFolder& folder, std::wstring command, const wchar_t* name, bool exists)
{
    command = L"Z:\\bin\\" + command;
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION program = {};
    if (!CreateProcessW(nullptr, &command[0], nullptr, nullptr, FALSE, 0, nullptr, folder.path.c_str(), &startup,
                        &program))
        return false;
    CloseHandle(program.hThread);
    CloseHandle(program.hProcess);
    const ULONGLONG end = GetTickCount64() + 60000;
    while (fileExists(folder.path + name) != exists && GetTickCount64() < end)
        Sleep(10);
    return fileExists(folder.path + name) == exists;
}

TEST(HostSafeFile, FollowsLinksAndLeavesOtherNamesAsTheyAre)
{
    TestFolder folder;
    const std::wstring photo = folder.path + L"photo.png", link = folder.path + L"link.png";
    writeBytes(photo, oldBytes);
    ASSERT_TRUE(runUntil(folder, L"ln -s photo.png link.png", L"link.png", true));
    EXPECT_EQ(nameOfPath(fileBehind(link)), L"photo.png");
    EXPECT_TRUE(sameFile(fileBehind(link), photo));
    for (const std::wstring& name : {photo, folder.path + L".\\PHOTO.png", folder.path + L"none.png", std::wstring()})
        EXPECT_EQ(fileBehind(name), name);
    ASSERT_TRUE(runUntil(folder, L"ln -s . folder", L"folder", true));
    EXPECT_EQ(fileBehind(folder.path + L"folder\\photo.png"), folder.path + L"folder\\photo.png");
    EXPECT_EQ(nameOfPath(fileBehind(folder.path + L"folder\\link.png")), L"photo.png");
    EXPECT_TRUE(runUntil(folder, L"rm link.png", L"link.png", false));
    EXPECT_TRUE(runUntil(folder, L"rm folder", L"folder", false));
}

TEST(HostSafeFile, KnowsOneFileUnderTwoNames)
{
    TestFolder folder;
    writeBytes(folder.path + L"a.png", oldBytes);
    writeBytes(folder.path + L"b.png", oldBytes);
    EXPECT_TRUE(sameFile(folder.path + L"a.png", folder.path + L".\\A.PNG"));
    EXPECT_FALSE(sameFile(folder.path + L"a.png", folder.path + L"b.png"));
    EXPECT_FALSE(sameFile(folder.path + L"none", folder.path + L"none"));
}
