#include "host/open_photo.h"

#include "host/background.h"
#include "host/codec_guard.h"
#include "host/host_window.h"
#include "host/successor.h"
#include "host/texts.h"

#include <commdlg.h>

constexpr wchar_t READABLE_FILES[] = L"*.jpg;*.jpeg;*.jpe;*.png;*.tif;*.tiff;*.bmp;*.dib;*.gif;*.webp";

struct StatusSentence {
    PhotoStatus status;
    ExitCode code;
    TextId sentence;
};
static const StatusSentence statusSentences[] = {
    {PhotoStatus::Missing, exitMissing, TEXT_ERROR_MISSING},
    {PhotoStatus::Unreadable, exitMissing, TEXT_ERROR_UNREADABLE},
    {PhotoStatus::NotAPhoto, exitNotAPhoto, TEXT_ERROR_NOT_PHOTO},
    {PhotoStatus::TooLarge, exitTooLarge, TEXT_ERROR_TOO_LARGE},
    {PhotoStatus::NoImaging, exitNoLibrary, TEXT_ERROR_NO_IMAGING},
};

// A decoder that runs out of memory, or into a damaged file's trap, ends the program with a right word: before
// the session there is nothing to lose.
static std::wstring pathInHand;

[[noreturn]] static void endBecause(PhotoStatus status)
{
    endWithSuccessor(complainAbout(status, pathInHand));
}

static void outOfMemory()
{
    endBecause(PhotoStatus::TooLarge);
}

static void decoderFailed()
{
    endBecause(PhotoStatus::NotAPhoto);
}

static PhotoStatus readGuarded(const std::wstring& path, HGLOBAL* image, SourcePhoto* source, Progress* progress)
{
    pathInHand = path;
    guardCodecs(outOfMemory, decoderFailed);
    startImaging();  // without it only the formats that need it are missing
    const PhotoStatus status = readPhoto(path, image, source, progress);
    stopImaging();
    unguardCodecs();
    return status;
}

// "Photos\0*.jpg;...\0All files\0*.*\0\0"
static std::wstring readableFilter()
{
    const std::wstring end(1, L'\0');
    return caption(TEXT_FILTER_PHOTOS) + end + READABLE_FILES + end + caption(TEXT_FILTER_ALL) + end + L"*.*" + end;
}

// One path, or a folder and names in it, each ended by a 0 and all by another.
static std::vector<std::wstring> chosenPaths(const wchar_t* chosen)
{
    const std::wstring first = chosen;
    std::vector<std::wstring> paths;
    for (const wchar_t* name = chosen + first.size() + 1; *name; name += wcslen(name) + 1)
        paths.push_back(first + (first.back() == L'\\' ? L"" : L"\\") + name);
    if (paths.empty()) paths.push_back(first);
    return paths;
}

ExitCode complainAbout(PhotoStatus status, const std::wstring& path)
{
    for (const StatusSentence& entry : statusSentences) {
        if (entry.status != status) continue;
        complain(sentence(entry.sentence, path));
        return entry.code;
    }
    return exitSaved;
}

ExitCode openPhoto(const std::wstring& path, HGLOBAL* image, SourcePhoto* source)
{
    PhotoStatus status = PhotoStatus::NotAPhoto;
    Progress progress;
    mention(sentence(TEXT_OPENING, path));
    runInBackground(caption(TEXT_OPENING, nameOfPath(path)), &progress, true,
                    [&] { status = readGuarded(path, image, source, &progress); });
    if (!progress.stop) return complainAbout(status, path);
    GlobalFree(*image);
    *image = nullptr;
    mention(sentence(TEXT_NOTHING_SAVED));
    return exitNothingSaved;
}

std::vector<std::wstring> askForPhotos()
{
    std::wstring paths(65536, L'\0');
    const std::wstring filter = readableFilter(), title = caption(TEXT_TITLE_OPEN);
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = hostWindow();
    dialog.lpstrFilter = filter.c_str();
    dialog.lpstrFile = &paths[0];
    dialog.nMaxFile = (DWORD)paths.size() - 1;
    dialog.lpstrTitle = title.c_str();
    dialog.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_EXPLORER | OFN_ALLOWMULTISELECT;
    return GetOpenFileNameW(&dialog) ? chosenPaths(paths.c_str()) : std::vector<std::wstring>();
}
