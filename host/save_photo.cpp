#include "host/save_photo.h"

#include "host/background.h"
#include "host/codec_guard.h"
#include "host/host_window.h"
#include "host/locked_photo.h"
#include "host/rescue.h"
#include "host/safe_file.h"
#include "host/successor.h"
#include "host/texts.h"
#include "host/work_record.h"

#include <commdlg.h>

constexpr wchar_t WRITABLE_FILTER[] = L"JPEG\0*.jpg;*.jpeg;*.jpe\0PNG\0*.png\0TIFF\0*.tif;*.tiff\0BMP\0*.bmp;*.dib\0";
constexpr int NAMES_TO_TRY = 3;
constexpr size_t MEMORY_FOR_SAVING = 16 << 20, LAST_WORD_SIZE = 16 << 10;

static std::wstring reasonOf(PhotoStatus status)
{
    switch (status) {
    case PhotoStatus::CannotWrite: return GetLastError() ? systemErrorText(GetLastError()) : sentence(TEXT_ERROR_DISK);
    case PhotoStatus::TooLarge: return sentence(TEXT_ERROR_MEMORY);
    default: return sentence(TEXT_ERROR_ENCODE);
    }
}

// Into a temporary file, which is checked and only then gets its name. On failure `problem` tells why, and the
// file that was there is still there.
static bool writeFile(const SaveRequest& request, const std::wstring& output, Progress* progress, PhotoFacts* written,
                      std::wstring* problem)
{
    const PhotoFormat format = formatOfName(output);
    std::wstring temporary;
    unsigned long error;
    if (!createBeside(output, &temporary, &error)) {
        *problem = systemErrorText(error);
        return false;
    }
    noteTemporary(temporary, L"");
    const PhotoStatus status = writePhoto(temporary, format, request.image, &request.source, progress);
    bool done = status == PhotoStatus::Ok;
    if (!done) {
        *problem = reasonOf(status);
    } else if (!verifyPhoto(temporary, format, request.image, &request.source, progress, written)) {
        *problem = sentence(TEXT_ERROR_VERIFY);
        done = false;
    }
    if (done) {
        if (request.replace && hasFurtherNames(output)) noteTemporary(temporary, output);
        done = putInPlace(temporary, output, request.replace, &error);
        if (!done) *problem = systemErrorText(error);
    }
    if (!done) DeleteFileW(temporary.c_str());
    noteTemporary(L"", L"");
    return done;
}

static void tellSaved(const SaveRequest& request, const std::wstring& output, const PhotoFacts& written)
{
    const Losses losses = lossesOf(request.source, formatOfName(output), &written);
    std::wstring words = sentence(TEXT_SAVED, output);
    if (!losses.names.empty()) words += L"\r\n" + sentence(TEXT_NOT_KEPT, inOneLine(losses));
    tell(words);
}

// Where nothing else has taken the picture.
static bool leaveRescueFile(const SaveRequest& request)
{
    const LockedPhoto photo(request.image);
    const std::wstring name =
        L"rescued-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(GetTickCount64()) + L".bmp";
    wchar_t temporary[MAX_PATH + 1] = L"";
    GetTempPathW(MAX_PATH + 1, temporary);
    const std::wstring folders[] = {rescueFolder(), temporary, folderOfPath(request.source.path), L""};
    for (const std::wstring& folder : folders) {
        if (!writeRescueFile(folder + name, photo.header, false)) continue;
        complain(sentence(TEXT_ERROR_RESCUED, folder + name));
        return true;
    }
    complain(sentence(TEXT_ERROR_LOST));
    return false;
}

// Kept back while there is enough, for when there is none. Small blocks stay the program's own when they are let go.
static LargeBytes memoryForSaving, memoryForLastWords[16];
static const SaveRequest* inHand;

// An encoder that finds no memory, or crashes, has not the last word on the picture.
static void saveCannotGoOn()
{
    for (LargeBytes& block : memoryForLastWords)
        block.reset();
    if (leaveRescueFile(*inHand)) DeleteFileW(rescueFileName().c_str());  // which is older
    endWithSuccessor(exitCannotWrite);
}

static bool writeGuarded(const SaveRequest& request, const std::wstring& output, Progress* progress,
                         PhotoFacts* written, std::wstring* problem)
{
    memoryForSaving.reset();
    inHand = &request;
    guardCodecs(saveCannotGoOn, saveCannotGoOn);
    const bool done = writeFile(request, output, progress, written, problem);
    unguardCodecs();
    return done;
}

// Nobody knows how the dialogs end that follow a failure.
static void notePicture(const SaveRequest& request)
{
    const LockedPhoto photo(request.image);
    if (photo.header) writeRescueFile(rescueFileName(), photo.header, false);
}

// And tells it. A link stays one: what it leads to is written.
static bool trySave(const SaveRequest& request, const std::wstring& name, std::wstring* problem)
{
    const std::wstring output = fileBehind(name);
    bool done = false;
    PhotoFacts written;
    Progress progress;
    mention(sentence(TEXT_SAVING, output));
    runInBackground(caption(TEXT_SAVING, nameOfPath(output)), &progress, false,
                    [&] { done = writeGuarded(request, output, &progress, &written, problem); });
    if (done)
        tellSaved(request, output, written);
    else
        notePicture(request);
    return done;
}

static void complainNotWritten(const std::wstring& output, const std::wstring& problem)
{
    complain(sentence(TEXT_ERROR_NOT_WRITTEN, output, problem));
}

bool keepMemoryForSaving()
{
    if (!memoryForSaving) memoryForSaving = allocateLarge(MEMORY_FOR_SAVING);
    bool kept = memoryForSaving != nullptr;
    for (LargeBytes& block : memoryForLastWords) {
        if (!block) block = allocateLarge(LAST_WORD_SIZE);
        kept = kept && block;
    }
    return kept;
}

std::wstring inOneLine(const Losses& losses)
{
    std::wstring line;
    for (TextId name : losses.names)
        line += (line.empty() ? L"" : L", ") + sentence(name);
    return line;
}

static std::wstring firstFree(const std::wstring& photo, std::wstring (*name)(const std::wstring& path, int number))
{
    int number = 1;
    while (fileExists(name(photo, number)))
        number++;
    return name(photo, number);
}

std::wstring freeRetouchedName(const std::wstring& photo)
{
    unsigned long error;
    const std::wstring usual = firstFree(photo, retouchedName), shorter = firstFree(photo, shortRetouchedName);
    return shorter != usual && !canBeWritten(usual, &error) ? shorter : usual;
}

bool askForOutput(std::wstring* suggestion)
{
    wchar_t path[32768] = L"";
    suggestion->copy(path, 32767);
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof(dialog);
    dialog.lpstrFilter = WRITABLE_FILTER;
    dialog.nFilterIndex = (DWORD)formatOfName(*suggestion);
    dialog.lpstrFile = path;
    dialog.nMaxFile = 32768;
    const std::wstring title = caption(TEXT_TITLE_SAVE);
    dialog.hwndOwner = hostWindow();
    dialog.lpstrTitle = title.c_str();
    dialog.lpstrDefExt = L"jpg";
    dialog.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST | OFN_EXPLORER;
    if (!GetSaveFileNameW(&dialog)) return false;
    *suggestion = path;
    return true;
}

ExitCode savePhoto(const SaveRequest& request)
{
    SaveRequest current = request;
    std::wstring problem;
    for (int attempt = 0; attempt < (request.ownName ? NAMES_TO_TRY : 1); ++attempt) {
        if (trySave(current, current.output, &problem)) return exitSaved;
        complainNotWritten(current.output, problem);
        current.output = freeRetouchedName(request.source.path);
        if (current.output == request.output) break;  // not the name is what is wrong
    }
    while (askForOutput(&current.output)) {
        current.replace = true;  // the dialog has asked
        if (formatOfName(current.output) == PhotoFormat::Unknown) {
            complain(sentence(TEXT_ERROR_FORMATS));
        } else if (trySave(current, current.output, &problem)) {
            return exitSaved;
        } else {
            complainNotWritten(current.output, problem);
        }
    }
    leaveRescueFile(request);
    return exitCannotWrite;
}

ExitCode saveAsking(SaveRequest* request, bool mayLeave)
{
    request->replace = true;  // the dialog asks
    std::wstring problem;
    for (;;) {
        if (!askForOutput(&request->output)) {
            if (mayLeave || ask(caption(TEXT_QUESTION_DISCARD), false)) return exitNothingSaved;
        } else if (formatOfName(request->output) == PhotoFormat::Unknown) {
            complain(sentence(TEXT_ERROR_FORMATS));
        } else if (trySave(*request, request->output, &problem)) {
            return exitSaved;
        } else {
            complainNotWritten(request->output, problem);
        }
    }
}
