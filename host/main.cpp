// retouch.exe: opens a photo in the retouching library and writes the result to a new file.
#include "host/arguments.h"
#include "host/file_names.h"
#include "host/photo_file.h"
#include "host/report.h"
#include "host/safe_file.h"
#include "host/session_call.h"

#include <commdlg.h>
#include <shellapi.h>

namespace {

const wchar_t usage[] =
    L"Usage: retouch.exe PHOTO [-o OUT] [--overwrite]\r\n"
    L"Opens PHOTO for retouching; Save in the tool palette writes the result to OUT (format by its\r\n"
    L"extension: jpg, png, tif, bmp), or to a new file PHOTO-retouched beside the photo.\r\n"
    L"--overwrite lets an existing OUT, or without -o the photo itself, be replaced.\r\n"
    L"Without arguments the files are asked for.\r\n"
    L"Exit code: 0 saved, 1 closed without saving, 2 usage, 3 no such photo, 4 not a readable photo,\r\n"
    L"5 too large, 6 retouching library not found, 7 cannot write.";

const wchar_t readableFilter[] = L"Photos\0*.jpg;*.jpeg;*.jpe;*.png;*.tif;*.tiff;*.bmp;*.dib;*.gif\0All files\0*.*\0";
const wchar_t writableFilter[] = L"JPEG\0*.jpg;*.jpeg;*.jpe\0PNG\0*.png\0TIFF\0*.tif;*.tiff\0BMP\0*.bmp;*.dib\0";

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
    {PhotoStatus::CannotEncode, exitCannotWrite, L"The picture could not be encoded for this file: "},
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

std::wstring freeRetouchedName(const std::wstring& photo)
{
    int number = 1;
    while (fileExists(retouchedName(photo, number)))
        number++;
    return retouchedName(photo, number);
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
    if (!folderIsWritable(output, &error)) {
        complain(L"No file can be written here: " + output + L" (" + systemErrorText(error) + L")");
        return exitCannotWrite;
    }
    return exitSaved;
}

ExitCode savePhoto(HGLOBAL image, const std::wstring& photo, const std::wstring& output, bool overwrite)
{
    HGLOBAL file;
    size_t size;
    const PhotoStatus status = encodePhoto(image, formatOfName(output), photo.c_str(), &file, &size);
    if (status != PhotoStatus::Ok) return complainAbout(status, output);
    unsigned long error;
    const bool written = writeWholeFile(output, GlobalLock(file), size, overwrite, &error);
    GlobalUnlock(file);
    GlobalFree(file);
    if (!written) {
        complain(L"The file could not be written: " + output + L" (" + systemErrorText(error) + L")");
        return exitCannotWrite;
    }
    tell(L"Saved: " + output);
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

// suggestion: the name the dialog starts with, replaced by the one chosen.
bool askForOutput(std::wstring* suggestion)
{
    wchar_t path[32768] = L"";
    suggestion->copy(path, 32767);
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof(dialog);
    dialog.lpstrFilter = writableFilter;
    dialog.nFilterIndex = (DWORD)formatOfName(*suggestion);
    dialog.lpstrFile = path;
    dialog.nMaxFile = 32768;
    dialog.lpstrTitle = L"Save the retouched photo";
    dialog.lpstrDefExt = L"jpg";
    dialog.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST | OFN_EXPLORER;
    if (!GetSaveFileNameW(&dialog)) return false;
    *suggestion = path;
    return true;
}

// Asks until the photo is saved or the user gives the changes up.
ExitCode saveAsking(HGLOBAL image, const std::wstring& photo)
{
    std::wstring output = freeRetouchedName(photo);
    for (;;) {
        if (askForOutput(&output)) {
            if (formatOfName(output) == PhotoFormat::Unknown)
                complain(L"Only jpg, png, tif and bmp files can be written.");
            else if (savePhoto(image, photo, output, true) == exitSaved)
                return exitSaved;
        } else if (MessageBoxW(nullptr, L"Throw the changes away?", L"Retouch", MB_YESNO | MB_ICONQUESTION) == IDYES) {
            return exitNothingSaved;
        }
    }
}

// Opens the photo and runs the session. exitSaved: *image holds the edited photo and is the caller's.
ExitCode editPhoto(const std::wstring& photo, HGLOBAL* image)
{
    const PhotoStatus status = readPhoto(photo.c_str(), image);
    if (status != PhotoStatus::Ok) return complainAbout(status, photo);
    const SessionResult result = runSession(*image, nameOfPath(photo));
    if (result == SessionResult::Saved) return exitSaved;
    *image = GlobalFree(*image);
    if (result == SessionResult::NoLibrary) {
        complain(L"KOVRTCH32.dll could not be loaded from the folder of retouch.exe.");
        return exitNoLibrary;
    }
    if (result == SessionResult::NoWindow) {
        complain(L"No window can be opened here; is there a display?");
        return exitNoLibrary;
    }
    tell(L"Nothing saved.");
    return exitNothingSaved;
}

ExitCode retouchAsking()
{
    std::wstring photo;
    if (!askForPhoto(&photo)) return exitNothingSaved;
    HGLOBAL image = nullptr;
    ExitCode code = editPhoto(photo, &image);
    if (code == exitSaved) code = saveAsking(image, photo);
    GlobalFree(image);
    return code;
}

ExitCode retouchNamed(const HostArguments& arguments)
{
    HGLOBAL image = nullptr;
    // The photo first: that it is missing matters more than where the result would go.
    const DWORD attributes = GetFileAttributesW(arguments.photo.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES && GetLastError() != ERROR_ACCESS_DENIED)
        return complainAbout(PhotoStatus::Missing, arguments.photo);
    std::wstring output = arguments.output;
    if (output.empty()) output = arguments.overwrite ? arguments.photo : freeRetouchedName(arguments.photo);
    ExitCode code =
        attributes & FILE_ATTRIBUTE_DIRECTORY ? exitSaved : checkOutput(arguments.photo, output, arguments.overwrite);
    if (code == exitSaved) code = editPhoto(arguments.photo, &image);
    if (code == exitSaved) code = savePhoto(image, arguments.photo, output, arguments.overwrite);
    GlobalFree(image);
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
    if (!startImaging()) return complainAbout(PhotoStatus::NoImaging, arguments.photo);
    const ExitCode code = arguments.photo.empty() ? retouchAsking() : retouchNamed(arguments);
    stopImaging();
    return code;
}

}  // namespace

int main()
{
    // Started by a double click the program gets a console of its own that nobody wants to see; then it
    // speaks through message boxes.
    DWORD processes[2];
    const bool ownConsole = GetConsoleProcessList(processes, 2) == 1;
    if (ownConsole) FreeConsole();
    reportTo(ownConsole);
    return run();
}
