#include "host/one_photo.h"

#include "host/codecs/jpeg_file.h"
#include "host/host_window.h"
#include "host/library.h"
#include "host/locked_photo.h"
#include "host/open_photo.h"
#include "host/rescue.h"
#include "host/safe_file.h"
#include "host/session_call.h"
#include "host/texts.h"
#include "host/work_record.h"

#include <algorithm>

// What speaks of the command line's options is in English, as they are.
static ExitCode refuse(const wchar_t* why, const std::wstring& output)
{
    complain(why + output);
    return exitCannotWrite;
}

// Everything that would make writing fail is found before the user has put work into the photo.
static ExitCode checkOutput(const std::wstring& photo, const std::wstring& output, bool overwrite)
{
    if (formatOfName(output) == PhotoFormat::Unknown) {
        complain(L"Only jpg, png, tif and bmp files can be written, not: " + output);
        return exitUsage;
    }
    if (!overwrite && sameFile(photo, output))
        return refuse(L"This would replace the photo itself; add --overwrite if that is meant: ", output);
    if (!overwrite && fileExists(output))
        return refuse(L"This file exists already; add --overwrite to replace it: ", output);
    const DWORD attributes = GetFileAttributesW(output.c_str());
    const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    if (exists && (attributes & FILE_ATTRIBUTE_DIRECTORY))
        return refuse(L"This is a folder, not a file to write: ", output);
    if (exists && (attributes & FILE_ATTRIBUTE_READONLY)) return refuse(L"This file is write-protected: ", output);
    unsigned long error;
    if (!canBeWritten(output, &error)) {
        complain(sentence(TEXT_ERROR_NO_PLACE, output, systemErrorText(error)));
        return exitCannotWrite;
    }
    return exitSaved;
}

static LONG longestSide(HGLOBAL image)
{
    const LockedPhoto photo(image);
    return std::max(photo.header->biWidth, photo.header->biHeight);
}

// What the photo itself decides, found before the user has put work into it.
static ExitCode checkLosses(const SaveRequest& request, bool overwritesPhoto, bool flatten)
{
    const PhotoFormat format = formatOfName(request.output);
    if (format == PhotoFormat::Jpeg && longestSide(request.image) > JPEG_LONGEST_SIDE) {
        complain(sentence(TEXT_ERROR_SIDE));
        return exitCannotWrite;
    }
    const Losses losses = lossesOf(request.source, format);
    if (losses.severe && overwritesPhoto && !flatten) {
        complain(L"This would be lost from the photo: " + inOneLine(losses) + L". Add --flatten if that is meant: " +
                 request.output);
        return exitCannotWrite;
    }
    if (!losses.names.empty() && !request.output.empty()) tell(sentence(TEXT_LOSSES, inOneLine(losses)));
    return exitSaved;
}

static ExitCode complainAboutLibrary(const EditorLibrary& library)
{
    if (library.fault == LibraryFault::Missing)
        complain(sentence(TEXT_ERROR_LIBRARY_MISSING, library.faulty, programFolder()));
    else if (library.fault == LibraryFault::OtherBits)
        complain(sentence(TEXT_ERROR_LIBRARY_BITS, library.faulty));
    else
        complain(sentence(TEXT_ERROR_LIBRARY_DAMAGED, library.faulty));
    return exitNoLibrary;
}

// exitSaved: the image holds the edited photo.
static ExitCode runRecordedSession(const EditorLibrary& library, const SaveRequest& request)
{
    if (!hostWindow()) {
        complain(sentence(TEXT_ERROR_NO_WINDOW));
        return exitNoLibrary;
    }
    if (!keepMemoryForSaving()) return complainAbout(PhotoStatus::TooLarge, request.source.path);
    showTitle(nameOfPath(request.source.path));
    openWorkRecord(request.source.path);
    startRescue(request.image);
    if (runSession(library.retouch, request.image)) return exitSaved;
    mention(sentence(TEXT_NOTHING_SAVED));
    return exitNothingSaved;
}

static ExitCode editAndSave(const EditorLibrary& library, bool asking, SaveRequest* request)
{
    ExitCode code = runRecordedSession(library, *request);
    if (code == exitSaved) code = asking ? saveAsking(request, false) : savePhoto(*request);
    stopRescue();
    closeWorkRecord();
    return code;
}

// The rescued picture takes the place of the photo's own pixels, so that what is known of its file is kept.
static bool openRescued(const AbandonedWork& work, SaveRequest* request)
{
    SourcePhoto rescued;
    if (openPhoto(work.picture, &request->image, &rescued) != exitSaved) return false;
    HGLOBAL before = nullptr;
    if (openPhoto(work.photo, &before, &request->source) != exitSaved) request->source = {};
    GlobalFree(before);
    request->source.path = work.photo;
    return true;
}

static void goOnWith(const AbandonedWork& work)
{
    SaveRequest request = {};
    const EditorLibrary library = loadLibraryBeside();
    if (!library.retouch) {
        complainAboutLibrary(library);
        return;
    }
    if (openRescued(work, &request)) {
        request.output = freeRetouchedName(work.photo);
        request.ownName = true;
        if (editAndSave(library, false, &request) == exitSaved) forgetAbandonedWork(work);
    }
    GlobalFree(request.image);
    FreeLibrary(library.module);
}

static SaveRequest requestFor(const PhotoTask& task)
{
    SaveRequest request = {};
    request.replace = task.overwrite;
    request.ownName = task.output.empty() && !task.overwrite;
    request.output = request.ownName || task.ask ? freeRetouchedName(task.photo)
                     : task.output.empty()       ? task.photo
                                                 : task.output;
    return request;
}

// The photo first: that it is missing matters more than where the result would go.
static ExitCode checkTask(const PhotoTask& task, const SaveRequest& request)
{
    const DWORD attributes = GetFileAttributesW(task.photo.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES && GetLastError() != ERROR_ACCESS_DENIED)
        return complainAbout(PhotoStatus::Missing, task.photo);
    const bool opens = attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY);
    return opens && !task.ask ? checkOutput(task.photo, request.output, task.overwrite) : exitSaved;
}

static ExitCode openAndEdit(const EditorLibrary& library, const PhotoTask& task, SaveRequest* request)
{
    offerAbandonedWork();
    ExitCode code = openPhoto(task.photo, &request->image, &request->source);
    const bool itself = task.overwrite && sameFile(task.photo, request->output);
    if (code == exitSaved && !task.ask) code = checkLosses(*request, itself, task.flatten);
    return code == exitSaved ? editAndSave(library, task.ask, request) : code;
}

ExitCode retouchPhoto(const PhotoTask& named, SaveRequest* done)
{
    PhotoTask task = named;
    task.photo = fileBehind(named.photo);
    task.output = fileBehind(named.output);
    SaveRequest request = requestFor(task);
    ExitCode code = checkTask(task, request);
    if (code != exitSaved) return code;
    const EditorLibrary library = loadLibraryBeside();
    code = library.retouch ? openAndEdit(library, task, &request) : complainAboutLibrary(library);
    if (library.module) FreeLibrary(library.module);
    if (code == exitSaved && done)
        *done = request;
    else
        GlobalFree(request.image);
    return code;
}

void offerAbandonedWork()
{
    static bool offered;
    if (offered) return;
    offered = true;
    for (const AbandonedWork& work : findAbandonedWork()) {
        const std::wstring question = caption(TEXT_QUESTION_RESCUED, work.photo);
        const int answer = MessageBoxW(hostWindow(), question.c_str(), L"Retouch", MB_YESNOCANCEL | MB_ICONQUESTION);
        if (answer == IDNO) forgetAbandonedWork(work);
        if (answer == IDYES) goOnWith(work);
    }
}
