#include "library/library_store.h"

#include <cwchar>

#include "library/format/list_file.h"
#include "library/selection_file.h"
#include "session/ground/session_record.h"

static bool isDirectory(const WCHAR* path)
{
    const DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

static bool makeLibraryDirectory()
{
    LibraryPath directory;
    if (!pathBesideModule(directory.text, L"SELDIB")) return false;
    return isDirectory(directory.text) || CreateDirectoryW(directory.text, nullptr) || isDirectory(directory.text);
}

// Leaves a directory that holds anything.
static void removeEmptyDirectory()
{
    LibraryPath directory;
    if (pathBesideModule(directory.text, L"SELDIB")) RemoveDirectoryW(directory.text);
}

// ---- the list file, open for the whole of one save so that no other session takes the same number ----

struct ListFile {
    HANDLE handle;
    LibraryPath path;
    bool isNew;     // made by this save
    LONGLONG size;  // before the save
    char start[COUNTER_DIGITS];
    DWORD startLength;  // bytes of `start` that were there
};

static bool moveTo(HANDLE file, LONGLONG position)
{
    LARGE_INTEGER offset;
    offset.QuadPart = position;
    return SetFilePointerEx(file, offset, nullptr, FILE_BEGIN);
}

static bool writeBytes(HANDLE file, LONGLONG position, const char* bytes, DWORD count)
{
    DWORD written = 0;
    return moveTo(file, position) && WriteFile(file, bytes, count, &written, nullptr) && written == count;
}

// Another session may be in the middle of a save: its turn is short.
static HANDLE openAlone(const WCHAR* path)
{
    const int attempts = 200, pauseMilliseconds = 10;
    for (int i = 0;; ++i) {
        HANDLE file = CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
        const bool busy = file == INVALID_HANDLE_VALUE && GetLastError() == ERROR_SHARING_VIOLATION;
        if (!busy || i == attempts) return file;
        Sleep(pauseMilliseconds);
    }
}

// A list that is new starts with the number 000.
constexpr char NEW_LIST_TEXT[] = "000\r\n";
constexpr DWORD NEW_LIST_SIZE = sizeof NEW_LIST_TEXT - 1;

static bool beginNewList(ListFile* list)
{
    if (!writeBytes(list->handle, 0, NEW_LIST_TEXT, NEW_LIST_SIZE)) return false;
    list->size = NEW_LIST_SIZE;
    return true;
}

static bool readListStart(ListFile* list)
{
    LARGE_INTEGER size;
    if (!GetFileSizeEx(list->handle, &size)) return false;
    list->size = size.QuadPart;
    list->isNew = list->isNew && list->size == 0;
    if (list->isNew && !beginNewList(list)) return false;
    return moveTo(list->handle, 0) && ReadFile(list->handle, list->start, COUNTER_DIGITS, &list->startLength, nullptr);
}

// Leaves a list in which somebody has saved: by its name alone it could be another session's by now.
static void removeUnusedList(const WCHAR* path)
{
    const HANDLE file =
        CreateFileW(path, GENERIC_READ | DELETE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    LARGE_INTEGER size;
    FILE_DISPOSITION_INFO gone = {TRUE};
    if (GetFileSizeEx(file, &size) && size.QuadPart <= NEW_LIST_SIZE)
        SetFileInformationByHandle(file, FileDispositionInfo, &gone, sizeof gone);
    CloseHandle(file);
}

// A save that failed leaves no list where there was none.
static void closeList(const ListFile& list, bool saved)
{
    CloseHandle(list.handle);
    if (list.isNew && !saved) removeUnusedList(list.path.text);
}

static bool openList(ListFile* list)
{
    if (!libraryFile(&list->path, L"seldib.lst")) return false;
    list->handle = openAlone(list->path.text);
    if (list->handle == INVALID_HANDLE_VALUE) return false;
    list->isNew = GetLastError() != ERROR_ALREADY_EXISTS;
    if (readListStart(list)) return true;
    closeList(*list, false);
    return false;
}

// The new line first: it may find no room, whereas the counter's bytes are there already.
static bool advanceList(const ListFile& list, int number)
{
    char counter[LIST_TEXT_SIZE], line[LIST_TEXT_SIZE];
    formatCounter(counter, number);
    formatListLine(line, number);
    // A list shorter than a counter grows by it before the line is added.
    const LONGLONG end = list.size < COUNTER_DIGITS ? COUNTER_DIGITS : list.size;
    return writeBytes(list.handle, end, line, (DWORD)strlen(line)) &&
           writeBytes(list.handle, 0, counter, COUNTER_DIGITS);
}

static void restoreList(const ListFile& list)
{
    writeBytes(list.handle, 0, list.start, list.startLength);
    if (moveTo(list.handle, list.size)) SetEndOfFile(list.handle);
}

// ---- saving ----

static bool numberedFile(LibraryPath* path, int number)
{
    char name[LIST_TEXT_SIZE];
    WCHAR wideName[LIST_TEXT_SIZE];
    formatSelectionName(name, number);
    for (size_t i = 0; i < LIST_TEXT_SIZE; ++i)
        wideName[i] = (WCHAR)name[i];
    return libraryFile(path, wideName);
}

// The file appears under its name last, when everything that may fail for want of room has been done.
static bool saveUnderNumber(const ListFile& list, const LibraryPath& path, int number)
{
    if (!writeUnpublished(path.text, session->selectionImage, session->selectionMask)) return false;
    if (advanceList(list, number) && publishWritten(path.text)) return true;
    restoreList(list);
    discardWritten(path.text);
    return false;
}

// A path that cannot be spelled out in the field leaves it empty rather than naming another file.
static void rememberSaved(const LibraryPath& path)
{
    char* const field = session->lastSavedSelection;
    BOOL inexact = FALSE;
    const int length = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, path.text, -1, field,
                                           sizeof session->lastSavedSelection, nullptr, &inexact);
    if (length == 0 || inexact) field[0] = 0;
}

static bool saveUnderNextNumber(LibraryPath& path)
{
    ListFile list;
    if (!openList(&list)) return false;
    const int number = parseCounter(list.start, list.startLength) + 1;
    const bool done = numberedFile(&path, number) && saveUnderNumber(list, path, number);
    closeList(list, done);
    return done;
}

int saveSelectionToLibrary(LibraryPath* saved)
{
    LibraryPath path;
    if (!session || !session->selectionImage || !session->selectionMask || !makeLibraryDirectory()) return 0;
    if (!saveUnderNextNumber(path)) {
        removeEmptyDirectory();
        return 0;
    }
    rememberSaved(path);
    if (saved) *saved = path;
    return 1;
}

// ---- listing and deleting ----

static void offerFile(const WCHAR* name, LibraryFileFound found, void* context)
{
    LibraryPath path;
    if (!libraryFile(&path, name)) return;
    HGLOBAL thumbnail = readSelectionThumbnail(path.text);
    if (thumbnail) found(context, path, thumbnail);
}

int listLibraryFiles(LibraryFileFound found, void* context)
{
    LibraryPath pattern;
    WIN32_FIND_DATAW file;
    if (!libraryFile(&pattern, L"*.tif")) return 0;
    HANDLE search = FindFirstFileW(pattern.text, &file);
    if (search == INVALID_HANDLE_VALUE) return 0;
    do {
        offerFile(file.cFileName, found, context);
    } while (FindNextFileW(search, &file));
    FindClose(search);
    return 1;
}

int deleteLibraryFile(const WCHAR* path)
{
    return path && DeleteFileW(path);
}
