#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "image/packed_bitmap.h"
#include "library/library_store.h"
#include "library/selection_file.h"
#include "session/ground/module_state.h"
#include "session/ground/session_record.h"
#include "tests/reference/tiff_reference.h"
#include "tests/session/import_patch.h"

typedef std::wstring Path;

static std::vector<uint8_t> fileBytes(const Path& path)
{
    std::vector<uint8_t> bytes;
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, 7, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return bytes;
    bytes.resize(GetFileSize(file, nullptr));
    DWORD read = 0;
    ReadFile(file, bytes.data(), (DWORD)bytes.size(), &read, nullptr);
    CloseHandle(file);
    return bytes;
}

static std::string fileText(const Path& path)
{
    const std::vector<uint8_t> bytes = fileBytes(path);
    return std::string(bytes.begin(), bytes.end());
}

static void writeFile(const Path& path, const std::vector<uint8_t>& bytes)
{
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE) << "error " << GetLastError();
    DWORD written = 0;
    WriteFile(file, bytes.data(), (DWORD)bytes.size(), &written, nullptr);
    CloseHandle(file);
}

static void writeText(const Path& path, const std::string& text)
{
    writeFile(path, std::vector<uint8_t>(text.begin(), text.end()));
}

static bool exists(const Path& path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

static std::vector<Path> namesIn(const Path& directory)
{
    std::vector<Path> names;
    WIN32_FIND_DATAW file;
    HANDLE search = FindFirstFileW((directory + L"*").c_str(), &file);
    if (search == INVALID_HANDLE_VALUE) return names;
    do {
        if (file.cFileName[0] != L'.') names.push_back(file.cFileName);
    } while (FindNextFileW(search, &file));
    FindClose(search);
    return names;
}

static HGLOBAL packed(const reference::Picture& image, int xPels, int yPels)
{
    const std::vector<uint8_t> rows = storedRows(image, 0xCC);
    HGLOBAL handle = createBitmap(image.width, image.height, 24);
    BITMAPINFOHEADER* const header = (BITMAPINFOHEADER*)GlobalLock(handle);
    header->biXPelsPerMeter = xPels;
    header->biYPelsPerMeter = yPels;
    memcpy(header + 1, rows.data(), rows.size());
    GlobalUnlock(handle);
    return handle;
}

static reference::Picture unpacked(HGLOBAL handle)
{
    if (!handle) return reference::Picture(0, 0);
    const BITMAPINFOHEADER* const header = (const BITMAPINFOHEADER*)GlobalLock(handle);
    const reference::Picture image =
        reference::fromStoredRows((const uint8_t*)(header + 1), header->biWidth, header->biHeight);
    GlobalUnlock(handle);
    return image;
}

// Each case has its own empty directory and its own record; moduleInstance stays null, so that the module
// is the test program, unless a case loads one from elsewhere.
struct SelectionFiles : testing::Test {
    SessionRecord record = {};
    Path directory;

    void SetUp() override
    {
        session = &record;
        WCHAR temporary[MAX_PATH], name[MAX_PATH];
        GetTempPathW(MAX_PATH, temporary);
        GetTempFileNameW(temporary, L"sel", 0, name);
        DeleteFileW(name);
        CreateDirectoryW(name, nullptr);
        directory = Path(name) + L"\\";
    }
    void TearDown() override
    {
        for (HGLOBAL handle : {record.selectionImage, record.selectionMask}) {
            if (handle) GlobalFree(handle);
        }
        session = nullptr;
        removeTree(directory);
    }
    static void removeTree(const Path& path)
    {
        for (const Path& name : namesIn(path)) {
            SetFileAttributesW((path + name).c_str(), FILE_ATTRIBUTE_NORMAL);
            if (!DeleteFileW((path + name).c_str())) removeTree(path + name + L"\\");
        }
        RemoveDirectoryW(path.substr(0, path.size() - 1).c_str());
    }
    void setSelection(const ReferenceSelection& selection)
    {
        for (HGLOBAL handle : {record.selectionImage, record.selectionMask}) {
            if (handle) GlobalFree(handle);
        }
        record.selectionImage = packed(selection.image, selection.imageXPelsPerMetre, selection.imageYPelsPerMetre);
        record.selectionMask = packed(selection.mask, selection.maskXPelsPerMetre, selection.maskYPelsPerMetre);
    }
};

TEST_F(SelectionFiles, WrittenFilesEqualTheIndependentWriterByteForByte)
{
    const int sizes[][2] = {{1, 1}, {17, 9}, {100, 10}, {10, 100}, {3000, 2000}};
    for (const auto& size : sizes) {
        const ReferenceSelection selection = randomSelection(11, size[0], size[1]);
        setSelection(selection);
        const Path path = directory + L"a.tif";
        ASSERT_EQ(1, writeSelectionTiff(path.c_str(), record.selectionImage, record.selectionMask));
        EXPECT_TRUE(fileBytes(path) == referenceTiff(selection)) << size[0] << " x " << size[1];
        EXPECT_EQ(namesIn(directory).size(), 1u);
    }
}

TEST_F(SelectionFiles, ARoundTripThroughAFileChangesNoPixel)
{
    const ReferenceSelection selection = randomSelection(12, 301, 77);
    setSelection(selection);
    const Path path = directory + L"a.tif";
    ASSERT_EQ(1, writeSelectionTiff(path.c_str(), record.selectionImage, record.selectionMask));
    ASSERT_EQ(1, readSelectionTiff(path.c_str()));
    EXPECT_TRUE(unpacked(record.selectionImage).pixels == selection.image.pixels);
    EXPECT_TRUE(unpacked(record.selectionMask).pixels == selection.mask.pixels);
    EXPECT_EQ(fileBytes(path), referenceTiff(selection));
}

TEST_F(SelectionFiles, BothByteOrdersAreReadByBothReaders)
{
    const ReferenceSelection selection = randomSelection(13, 33, 21);
    for (const bool bigEndian : {false, true}) {
        const Path path = directory + L"a.tif";
        writeFile(path, referenceTiff(selection, bigEndian));
        ASSERT_EQ(1, readSelectionTiff(path.c_str()));
        EXPECT_TRUE(unpacked(record.selectionImage).pixels == selection.image.pixels);
        EXPECT_TRUE(unpacked(record.selectionMask).pixels == selection.mask.pixels);
        HGLOBAL thumbnail = readSelectionThumbnail(path.c_str());
        ASSERT_TRUE(thumbnail);
        const reference::Picture image = unpacked(thumbnail);
        const std::vector<uint8_t> rgb = referenceThumbnail(selection);
        EXPECT_EQ(image.width, 40);
        EXPECT_EQ(image.height, 30);
        for (size_t i = 0; i < image.pixels.size(); ++i) {
            ASSERT_TRUE((image.pixels[i] == reference::Pixel{rgb[i * 3 + 2], rgb[i * 3 + 1], rgb[i * 3]}));
        }
        GlobalFree(thumbnail);
    }
}

TEST_F(SelectionFiles, AResolutionOf3780ComesBackAs3779)
{
    ReferenceSelection selection(2, 2);
    selection.imageXPelsPerMetre = selection.imageYPelsPerMetre = 3780;
    setSelection(selection);
    const Path path = directory + L"a.tif";
    ASSERT_EQ(1, writeSelectionTiff(path.c_str(), record.selectionImage, record.selectionMask));
    ASSERT_EQ(1, readSelectionTiff(path.c_str()));
    const BITMAPINFOHEADER* const header = (const BITMAPINFOHEADER*)GlobalLock(record.selectionImage);
    EXPECT_EQ(header->biXPelsPerMeter, 3779);
    EXPECT_EQ(header->biYPelsPerMeter, 3779);
    GlobalUnlock(record.selectionImage);
}

TEST_F(SelectionFiles, AFileThatCannotBeReadLeavesTheSelectionAlone)
{
    const ReferenceSelection selection = randomSelection(14, 20, 20);
    setSelection(selection);
    const HGLOBAL image = record.selectionImage, mask = record.selectionMask;
    std::vector<uint8_t> bytes = referenceTiff(selection);
    bytes.resize(192 + 1200 + 178 + 59);  // one byte of the mask is missing
    writeFile(directory + L"a.tif", bytes);
    EXPECT_EQ(0, readSelectionTiff((directory + L"a.tif").c_str()));
    EXPECT_EQ(0, readSelectionTiff((directory + L"none.tif").c_str()));
    EXPECT_EQ(0, readSelectionTiff(nullptr));
    EXPECT_EQ(nullptr, readSelectionThumbnail((directory + L"a.tif").c_str()));
    EXPECT_EQ(record.selectionImage, image);
    EXPECT_EQ(record.selectionMask, mask);
}

TEST_F(SelectionFiles, AFailedWriteLeavesTheOlderFileAndNothingElse)
{
    const ReferenceSelection selection = randomSelection(15, 20, 20);
    setSelection(selection);
    const Path path = directory + L"a.tif";
    ASSERT_EQ(1, writeSelectionTiff(path.c_str(), record.selectionImage, record.selectionMask));
    HGLOBAL other = createBitmap(19, 20, 24);
    EXPECT_EQ(0, writeSelectionTiff(path.c_str(), record.selectionImage, other));
    EXPECT_EQ(0, writeSelectionTiff(path.c_str(), nullptr, record.selectionMask));
    EXPECT_EQ(0, writeSelectionTiff(path.c_str(), record.selectionImage, nullptr));
    EXPECT_EQ(0, writeSelectionTiff((directory + L"no\\a.tif").c_str(), record.selectionImage, record.selectionMask));
    GlobalFree(other);
    EXPECT_TRUE(fileBytes(path) == referenceTiff(selection));
    EXPECT_EQ(namesIn(directory).size(), 1u);
}

TEST_F(SelectionFiles, PathsLongerThan127CharactersWork)
{
    const ReferenceSelection selection = randomSelection(16, 5, 5);
    setSelection(selection);
    Path path = directory;
    path += Path(258 - path.size() - 4, L'n') + L".tif";  // 258 characters: one below the system's limit
    ASSERT_EQ(1, writeSelectionTiff(path.c_str(), record.selectionImage, record.selectionMask));
    EXPECT_TRUE(fileBytes(path) == referenceTiff(selection));
    EXPECT_EQ(1, readSelectionTiff(path.c_str()));
}

// The library lies beside the module, here this test program.
struct SelectionLibrary : SelectionFiles {
    Path library;

    void SetUp() override
    {
        SelectionFiles::SetUp();
        WCHAR module[MAX_PATH];
        GetModuleFileNameW(nullptr, module, MAX_PATH);
        library = Path(module).substr(0, Path(module).rfind(L'\\') + 1) + L"SELDIB\\";
        moduleInstance = nullptr;
        removeTree(library);
    }
    void TearDown() override
    {
        removeTree(library);
        SelectionFiles::TearDown();
    }
    Path list() const { return library + L"seldib.lst"; }
};

TEST_F(SelectionLibrary, TheFirstSaveMakesDirectoryListAndFile)
{
    const ReferenceSelection selection = randomSelection(20, 17, 9);
    setSelection(selection);
    LibraryPath saved;
    ASSERT_EQ(1, saveSelectionToLibrary(&saved));
    EXPECT_EQ(fileText(list()), "001\r\nseld_001.tif\r\n");
    EXPECT_TRUE(fileBytes(library + L"seld_001.tif") == referenceTiff(selection));
    EXPECT_EQ(Path(saved.text), library + L"seld_001.tif");
    EXPECT_EQ(std::string(record.lastSavedSelection), std::string(library.begin(), library.end()) + "seld_001.tif");
    EXPECT_EQ(namesIn(library).size(), 2u);
}

TEST_F(SelectionLibrary, ADeletedFileLeavesAGapAndItsLine)
{
    setSelection(randomSelection(21, 4, 4));
    for (int i = 0; i < 3; ++i)
        ASSERT_EQ(1, saveSelectionToLibrary());
    EXPECT_EQ(1, deleteLibraryFile((library + L"seld_002.tif").c_str()));
    EXPECT_EQ(0, deleteLibraryFile((library + L"seld_002.tif").c_str()));
    EXPECT_FALSE(exists(library + L"seld_002.tif"));
    ASSERT_EQ(1, saveSelectionToLibrary());
    EXPECT_TRUE(exists(library + L"seld_004.tif"));
    EXPECT_EQ(fileText(list()), "004\r\nseld_001.tif\r\nseld_002.tif\r\nseld_003.tif\r\nseld_004.tif\r\n");
}

TEST_F(SelectionLibrary, After999ComesFile1000AndThenFile101IsOverwritten)
{
    const ReferenceSelection first = randomSelection(22, 4, 4), second = randomSelection(23, 5, 5);
    CreateDirectoryW(library.c_str(), nullptr);
    writeText(list(), "999\r\n");
    writeFile(library + L"seld_101.tif", {1, 2, 3});
    setSelection(first);
    ASSERT_EQ(1, saveSelectionToLibrary());
    EXPECT_EQ(fileText(list()), "100\r\nseld_1000.tif\r\n");
    EXPECT_TRUE(fileBytes(library + L"seld_1000.tif") == referenceTiff(first));
    setSelection(second);
    ASSERT_EQ(1, saveSelectionToLibrary());
    EXPECT_EQ(fileText(list()), "101\r\nseld_1000.tif\r\nseld_101.tif\r\n");
    EXPECT_TRUE(fileBytes(library + L"seld_101.tif") == referenceTiff(second));
}

TEST_F(SelectionLibrary, AListWithFewerThanThreeDigitsStillNumbers)
{
    CreateDirectoryW(library.c_str(), nullptr);
    setSelection(randomSelection(24, 4, 4));
    writeText(list(), "7\r\n");
    ASSERT_EQ(1, saveSelectionToLibrary());
    EXPECT_TRUE(exists(library + L"seld_008.tif"));
    EXPECT_EQ(fileText(list()), "008seld_008.tif\r\n");
    writeText(list(), "");
    ASSERT_EQ(1, saveSelectionToLibrary());
    EXPECT_EQ(fileText(list()), "001seld_001.tif\r\n");
}

TEST_F(SelectionLibrary, NothingIsSavedWithoutASelection)
{
    EXPECT_EQ(0, saveSelectionToLibrary());
    EXPECT_FALSE(exists(library));
}

TEST_F(SelectionLibrary, AFailedSaveLeavesListCounterAndFilesAsTheyWere)
{
    const ReferenceSelection selection = randomSelection(25, 4, 4);
    setSelection(selection);
    ASSERT_EQ(1, saveSelectionToLibrary());
    const std::string before = fileText(list());
    strcpy(record.lastSavedSelection, "untouched");

    // The name of the next file is taken by a directory: publishing fails after everything else is done.
    CreateDirectoryW((library + L"seld_002.tif").c_str(), nullptr);
    EXPECT_EQ(0, saveSelectionToLibrary());
    EXPECT_EQ(fileText(list()), before);
    EXPECT_EQ(namesIn(library).size(), 3u);

    // The pixels cannot be written.
    RemoveDirectoryW((library + L"seld_002.tif").c_str());
    GlobalFree(record.selectionMask);
    record.selectionMask = createBitmap(3, 3, 24);
    EXPECT_EQ(0, saveSelectionToLibrary());
    EXPECT_EQ(fileText(list()), before);
    EXPECT_EQ(namesIn(library).size(), 2u);
    EXPECT_TRUE(fileBytes(library + L"seld_001.tif") == referenceTiff(selection));
    EXPECT_STREQ(record.lastSavedSelection, "untouched");

    setSelection(selection);
    ASSERT_EQ(1, saveSelectionToLibrary()) << "the number is used by the next save";
    EXPECT_TRUE(exists(library + L"seld_002.tif"));
}

// The other session is done when this one has waited for it three times.
static HANDLE heldList;
static int pauses;

static void WINAPI closeAtTheThirdPause(DWORD)
{
    if (++pauses == 3) CloseHandle(heldList);
}

TEST_F(SelectionLibrary, AListThatAnotherSessionHoldsIsWaitedFor)
{
    setSelection(randomSelection(26, 4, 4));
    ASSERT_EQ(1, saveSelectionToLibrary());
    pauses = 0;
    heldList =
        CreateFileW(list().c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(heldList, INVALID_HANDLE_VALUE);
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, GetModuleHandleA(nullptr), "Sleep", (void*)closeAtTheThirdPause));
    EXPECT_EQ(1, saveSelectionToLibrary());
    undoPatch(&patch);
    EXPECT_EQ(3, pauses);
    EXPECT_EQ(fileText(list()), "002\r\nseld_001.tif\r\nseld_002.tif\r\n");
}

// The other session saves as soon as it can open the list.
static Path listOfBoth;
constexpr char OTHERS_LIST[] = "001\r\nseld_001.tif\r\n";
static bool otherHasSaved;
static ImportPatch closePatch;

static BOOL WINAPI closeAndLetTheOtherSave(HANDLE handle)
{
    const auto close = (BOOL(WINAPI*)(HANDLE))closePatch.before;
    const BOOL closed = close(handle);
    if (otherHasSaved) return closed;
    const HANDLE file = CreateFileW(listOfBoth.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return closed;
    DWORD written;
    otherHasSaved = WriteFile(file, OTHERS_LIST, sizeof OTHERS_LIST - 1, &written, nullptr);
    close(file);
    return closed;
}

TEST_F(SelectionLibrary, ANewListThatAnotherSessionHasSavedInStaysWhenTheFirstSaveFails)
{
    setSelection(randomSelection(29, 4, 4));
    GlobalFree(record.selectionMask);
    record.selectionMask = createBitmap(3, 3, 24);  // cannot be written
    listOfBoth = list();
    otherHasSaved = false;
    ASSERT_TRUE(patchImport(&closePatch, GetModuleHandleA(nullptr), "CloseHandle", (void*)closeAndLetTheOtherSave));
    EXPECT_EQ(0, saveSelectionToLibrary());
    undoPatch(&closePatch);
    EXPECT_TRUE(otherHasSaved);
    EXPECT_EQ(fileText(list()), OTHERS_LIST);
    removeTree(library);
    EXPECT_EQ(0, saveSelectionToLibrary());
    EXPECT_FALSE(exists(library)) << "nobody saved in it";
}

static void collect(void* context, const LibraryPath& path, HGLOBAL thumbnail)
{
    ((std::vector<Path>*)context)->push_back(path.text);
    EXPECT_EQ(bitmapWidth(thumbnail), 40);
    EXPECT_EQ(bitmapHeight(thumbnail), 30);
    GlobalFree(thumbnail);
}

TEST_F(SelectionLibrary, ListingNamesReadableFilesAndSkipsOthers)
{
    std::vector<Path> found;
    EXPECT_EQ(0, listLibraryFiles(collect, &found)) << "no directory";
    CreateDirectoryW(library.c_str(), nullptr);
    writeText(list(), "000\r\n");
    EXPECT_EQ(0, listLibraryFiles(collect, &found)) << "no file";
    writeText(library + L"broken.tif", "II*");
    EXPECT_EQ(1, listLibraryFiles(collect, &found));
    EXPECT_TRUE(found.empty());

    setSelection(randomSelection(27, 6, 4));
    for (int i = 0; i < 2; ++i)
        ASSERT_EQ(1, saveSelectionToLibrary());
    writeFile(library + L"seld_003.ti~", fileBytes(library + L"seld_001.tif"));  // left behind by a power cut
    SetFileAttributesW((library + L"seld_002.tif").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(1, listLibraryFiles(collect, &found));
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, (std::vector<Path>{library + L"seld_001.tif", library + L"seld_002.tif"}));
}

TEST_F(SelectionLibrary, MalformedFilesAreNeitherListedNorLoaded)
{
    CreateDirectoryW(library.c_str(), nullptr);
    const std::vector<uint8_t> whole = referenceTiff(randomSelection(28, 17, 9));
    setSelection(randomSelection(28, 17, 9));
    const HGLOBAL image = record.selectionImage;
    // Cut anywhere, a file lacks at least a byte of its thumbnail.
    for (size_t length = 0; length < whole.size(); length += 97) {
        const Path path = library + L"cut_" + std::to_wstring(length) + L".tif";
        writeFile(path, std::vector<uint8_t>(whole.begin(), whole.begin() + (ptrdiff_t)length));
    }
    std::vector<Path> found;
    EXPECT_EQ(1, listLibraryFiles(collect, &found));
    EXPECT_TRUE(found.empty());
    EXPECT_EQ(0, readSelectionTiff((library + L"cut_97.tif").c_str()));
    EXPECT_EQ(0, readSelectionTiff((library + L"cut_679.tif").c_str()));
    EXPECT_EQ(record.selectionImage, image);
}
