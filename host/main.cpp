// retouch.exe: opens a photo in the retouching library and writes the result to a new file.
#include "host/arguments.h"
#include "host/codecs/jpeg_file.h"
#include "host/library.h"
#include "host/rescue.h"
#include "host/safe_file.h"
#include "host/save_photo.h"
#include "host/session_call.h"
#include "host/work_record.h"

#include <commdlg.h>
#include <new>
#include <shellapi.h>

namespace {

const wchar_t usage[] =
    L"Usage: retouch.exe PHOTO [-o OUT] [--overwrite [--flatten]]\r\n"
    L"Opens PHOTO for retouching; Save in the tool palette writes the result to OUT (format by its\r\n"
    L"extension: jpg, png, tif, bmp), or to a new file PHOTO-retouched beside the photo.\r\n"
    L"--overwrite lets an existing OUT, or without -o the photo itself, be replaced.\r\n"
    L"The photo itself is replaced only where nothing but its pixels changes: where pages, alpha, depth or the\r\n"
    L"kind of colours would go, --flatten must be given too.\r\n"
    L"Without arguments the files are asked for.\r\n"
    L"Exit code: 0 saved, 1 closed without saving, 2 usage, 3 no such photo, 4 not a readable photo,\r\n"
    L"5 too large, 6 retouching library not found, 7 cannot write.";

const wchar_t readableFilter[] =
    L"Photos\0*.jpg;*.jpeg;*.jpe;*.png;*.tif;*.tiff;*.bmp;*.dib;*.gif;*.webp\0All files\0*.*\0";
std::vector<std::wstring> commandLine()
{
    std::vector<std::wstring> words;
    int count = 0;
    wchar_t** line = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; line && i < count; i++)
        words.push_back(line[i]);
    LocalFree(line);
    return words;
}

struct StatusSentence {
    PhotoStatus status;
    ExitCode code;
    const wchar_t* sentence;
};
const StatusSentence statusSentences[] = {
    {PhotoStatus::Missing, exitMissing, L"There is no such file: "},
    {PhotoStatus::Unreadable, exitMissing, L"This is a folder, or may not be read: "},
    {PhotoStatus::NotAPhoto, exitNotAPhoto, L"This is not a photo of a known format, or it is damaged: "},
    {PhotoStatus::TooLarge, exitTooLarge, L"This photo is too large for the memory: "},
    {PhotoStatus::NoImaging, exitNoLibrary, L"The system's imaging component is missing; cannot open: "},
};

ExitCode complainAbout(PhotoStatus status, const std::wstring& path)
{
    for (const StatusSentence& entry : statusSentences) {
        if (entry.status != status) continue;
        complain(entry.sentence + path);
        return entry.code;
    }
    return exitSaved;
}

// Everything that would make writing fail is found before the user has put work into the photo.
ExitCode checkOutput(const std::wstring& photo, const std::wstring& output, bool overwrite)
{
    if (formatOfName(output) == PhotoFormat::Unknown) {
        complain(L"Only jpg, png, tif and bmp files can be written, not: " + output);
        return exitUsage;
    }
    if (!overwrite && sameFile(photo, output)) {
        complain(L"This would replace the photo itself; add --overwrite if that is meant: " + output);
        return exitCannotWrite;
    }
    if (!overwrite && fileExists(output)) {
        complain(L"This file exists already; add --overwrite to replace it: " + output);
        return exitCannotWrite;
    }
    const DWORD attributes = GetFileAttributesW(output.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        complain(L"This is a folder, not a file to write: " + output);
        return exitCannotWrite;
    }
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)) {
        complain(L"This file is write-protected: " + output);
        return exitCannotWrite;
    }
    unsigned long error;
    if (!canBeWritten(output, &error)) {
        complain(L"No file can be written here: " + output + L" (" + systemErrorText(error) + L")");
        return exitCannotWrite;
    }
    return exitSaved;
}

bool askForPhoto(std::wstring* photo)
{
    wchar_t path[32768] = L"";
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof(dialog);
    dialog.lpstrFilter = readableFilter;
    dialog.lpstrFile = path;
    dialog.nMaxFile = 32768;
    dialog.lpstrTitle = L"Retouch a photo";
    dialog.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_EXPLORER;
    if (!GetOpenFileNameW(&dialog)) return false;
    *photo = path;
    return true;
}

// A decoder that runs out of memory, or into a damaged file's trap, ends the program with a right word: before
// the session there is nothing to lose.
void outOfMemory()
{
    complain(L"There is not enough memory to open the photo.");
    ExitProcess(exitTooLarge);
}

LONG WINAPI decoderFailed(EXCEPTION_POINTERS*)
{
    complain(L"The photo is damaged and cannot be opened.");
    ExitProcess(exitNotAPhoto);
}

PhotoStatus readGuarded(const std::wstring& path, HGLOBAL* image, SourcePhoto* source)
{
    LPTOP_LEVEL_EXCEPTION_FILTER filter = SetUnhandledExceptionFilter(decoderFailed);
    std::new_handler handler = std::set_new_handler(outOfMemory);
    const PhotoStatus status = readPhoto(path, image, source);
    std::set_new_handler(handler);
    SetUnhandledExceptionFilter(filter);
    return status;
}

ExitCode complainAboutLibrary(const Library& library)
{
    if (library.fault == LibraryFault::Missing)
        complain(library.faulty + L" is missing in the folder of retouch.exe: " + programFolder());
    else if (library.fault == LibraryFault::OtherBits)
        complain(library.faulty + L" is built for another number of bits than retouch.exe.");
    else
        complain(library.faulty + L" is damaged, or not the one that belongs to retouch.exe.");
    return exitNoLibrary;
}

ExitCode resultOfSession(SessionResult result)
{
    if (result == SessionResult::Saved) return exitSaved;
    if (result == SessionResult::NoWindow) {
        complain(L"No window can be opened here; is there a display?");
        return exitNoLibrary;
    }
    tell(L"Nothing saved.");
    return exitNothingSaved;
}

// exitSaved: the image holds the edited photo.
ExitCode runRecordedSession(const SourcePhoto& source, HGLOBAL image)
{
    const Library library = loadLibraryBeside();
    if (!library.retouch) return complainAboutLibrary(library);
    openWorkRecord(source.path);
    startRescue(image);
    const SessionResult result = runSession(library.retouch, image, nameOfPath(source.path));
    stopRescue();
    FreeLibrary(library.module);
    return resultOfSession(result);
}

// The rescued picture takes the place of the photo's own pixels, so that what is known of its file is kept.
bool openRescued(const AbandonedWork& work, SaveRequest* request)
{
    SourcePhoto rescued;
    if (readGuarded(work.picture, &request->image, &rescued) != PhotoStatus::Ok) return false;
    HGLOBAL before = nullptr;
    if (readGuarded(work.photo, &before, &request->source) != PhotoStatus::Ok) request->source = {};
    GlobalFree(before);
    request->source.path = work.photo;
    return true;
}

// Offers what an earlier program, that did not come to its end, has left.
void offerAbandonedWork()
{
    for (const AbandonedWork& work : findAbandonedWork()) {
        const std::wstring question = L"The work on this photo was cut off:\r\n" + work.photo +
                                      L"\r\n\r\nGo on with it? No throws it away; Cancel keeps it for later.";
        const int answer = MessageBoxW(nullptr, question.c_str(), L"Retouch", MB_YESNOCANCEL | MB_ICONQUESTION);
        SaveRequest request = {};
        if (answer == IDNO) forgetAbandonedWork(work);
        if (answer != IDYES || !openRescued(work, &request)) continue;
        request.output = freeRetouchedName(work.photo);
        request.ownName = true;
        ExitCode code = runRecordedSession(request.source, request.image);
        if (code == exitSaved) code = savePhoto(request);
        closeWorkRecord();
        GlobalFree(request.image);
        if (code == exitSaved) forgetAbandonedWork(work);
    }
}

// What the photo itself decides, found before the user has put work into it.
ExitCode checkLosses(const SaveRequest& request, bool overwritesPhoto, bool flatten)
{
    const PhotoFormat format = formatOfName(request.output);
    const BITMAPINFOHEADER* header = (const BITMAPINFOHEADER*)GlobalLock(request.image);
    const LONG longest = header->biWidth > header->biHeight ? header->biWidth : header->biHeight;
    GlobalUnlock(request.image);
    if (format == PhotoFormat::Jpeg && longest > JPEG_LONGEST_SIDE) {
        complain(L"A JPEG file cannot have more than 65500 pixels a side; write a png, tif or bmp file.");
        return exitCannotWrite;
    }
    const Losses losses = lossesOf(request.source, format);
    if (losses.severe && overwritesPhoto && !flatten) {
        complain(L"This would be lost from the photo: " + inOneLine(losses) + L". Add --flatten if that is meant: " +
                 request.output);
        return exitCannotWrite;
    }
    if (!losses.names.empty() && !request.output.empty())
        tell(L"A file of this kind will not keep: " + inOneLine(losses) + L".");
    return exitSaved;
}

ExitCode retouchAsking()
{
    SaveRequest request = {};
    std::wstring photo;
    offerAbandonedWork();
    if (!askForPhoto(&photo)) return exitNothingSaved;
    const PhotoStatus status = readGuarded(photo, &request.image, &request.source);
    if (status != PhotoStatus::Ok) return complainAbout(status, photo);
    request.output = freeRetouchedName(photo);
    ExitCode code = runRecordedSession(request.source, request.image);
    if (code == exitSaved) code = saveAsking(request);
    closeWorkRecord();
    GlobalFree(request.image);
    return code;
}

ExitCode editAndSave(const HostArguments& arguments, SaveRequest* request)
{
    offerAbandonedWork();
    mention(L"Opening " + arguments.photo);
    const PhotoStatus status = readGuarded(arguments.photo, &request->image, &request->source);
    if (status != PhotoStatus::Ok) return complainAbout(status, arguments.photo);
    const bool itself = arguments.overwrite && sameFile(arguments.photo, request->output);
    ExitCode code = checkLosses(*request, itself, arguments.flatten);
    if (code == exitSaved) code = runRecordedSession(request->source, request->image);
    if (code == exitSaved) {
        mention(L"Saving " + request->output);
        code = savePhoto(*request);
    }
    closeWorkRecord();
    return code;
}

ExitCode retouchNamed(const HostArguments& arguments)
{
    // The photo first: that it is missing matters more than where the result would go.
    const DWORD attributes = GetFileAttributesW(arguments.photo.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES && GetLastError() != ERROR_ACCESS_DENIED)
        return complainAbout(PhotoStatus::Missing, arguments.photo);
    SaveRequest request = {};
    request.replace = arguments.overwrite;
    request.ownName = arguments.output.empty() && !arguments.overwrite;
    request.output = request.ownName            ? freeRetouchedName(arguments.photo)
                     : arguments.output.empty() ? arguments.photo
                                                : arguments.output;
    ExitCode code = attributes & FILE_ATTRIBUTE_DIRECTORY
                        ? exitSaved
                        : checkOutput(arguments.photo, request.output, arguments.overwrite);
    if (code == exitSaved) code = editAndSave(arguments, &request);
    GlobalFree(request.image);
    return code;
}

ExitCode run()
{
    const HostArguments arguments = parseArguments(commandLine());
    if (!arguments.problem.empty()) {
        complain(arguments.problem + L"\r\n" + usage);
        return exitUsage;
    }
    if (arguments.help) {
        tell(usage);
        return exitSaved;
    }
    startImaging();  // without it only the formats that need it are missing
    const ExitCode code = arguments.photo.empty() ? retouchAsking() : retouchNamed(arguments);
    stopImaging();
    return code;
}

}  // namespace

int main()
{
    SetErrorMode(SEM_FAILCRITICALERRORS);  // what is wrong is told by this program, in sentences
    reportToTerminal();
    return run();
}
