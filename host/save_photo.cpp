#include "host/save_photo.h"

#include "host/rescue.h"
#include "host/safe_file.h"
#include "host/work_record.h"

#include <commdlg.h>

namespace {

const wchar_t writableFilter[] = L"JPEG\0*.jpg;*.jpeg;*.jpe\0PNG\0*.png\0TIFF\0*.tif;*.tiff\0BMP\0*.bmp;*.dib\0";
const int namesToTry = 3;

std::wstring reasonOf(PhotoStatus status)
{
    switch (status) {
    case PhotoStatus::CannotWrite:
        return GetLastError() ? systemErrorText(GetLastError()) : L"The disk is full, or it cannot be written to.";
    case PhotoStatus::TooLarge: return L"There is not enough memory.";
    default: return L"The picture could not be encoded for this file.";
    }
}

// Into a temporary file, which is checked and only then gets its name. On failure `problem` tells why, and the
// file that was there is still there.
bool trySave(const SaveRequest& request, const std::wstring& output, std::wstring* problem)
{
    const PhotoFormat format = formatOfName(output);
    std::wstring temporary;
    unsigned long error;
    if (!createBeside(output, &temporary, &error)) {
        *problem = systemErrorText(error);
        return false;
    }
    noteTemporary(temporary, L"");
    const PhotoStatus status = writePhoto(temporary, format, request.image, &request.source);
    bool done = status == PhotoStatus::Ok;
    if (!done) {
        *problem = reasonOf(status);
    } else if (!verifyPhoto(temporary, format, request.image, &request.source)) {
        *problem = L"What was written is not what was meant.";
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

void tellSaved(const SaveRequest& request, const std::wstring& output)
{
    const Losses losses = lossesOf(request.source, formatOfName(output));
    std::wstring sentence = L"Saved: " + output;
    if (!losses.names.empty()) sentence += L"\r\nNot kept: " + inOneLine(losses) + L".";
    tell(sentence);
}

// Where nothing else has taken the picture.
ExitCode leaveRescueFile(const SaveRequest& request)
{
    const void* packed = GlobalLock(request.image);
    const std::wstring name =
        L"rescued-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(GetTickCount64()) + L".bmp";
    wchar_t temporary[MAX_PATH + 1] = L"";
    GetTempPathW(MAX_PATH + 1, temporary);
    const std::wstring folders[] = {rescueFolder(), temporary, folderOfPath(request.source.path), L""};
    for (const std::wstring& folder : folders) {
        if (!writeRescueFile(folder + name, packed, false)) continue;
        complain(L"The photo could not be saved. The retouched picture is here: " + folder + name);
        GlobalUnlock(request.image);
        return exitCannotWrite;
    }
    GlobalUnlock(request.image);
    complain(L"The photo could not be saved, and no file could be written anywhere.");
    return exitCannotWrite;
}

bool confirmGivingUp()
{
    return MessageBoxW(nullptr, L"Throw the changes away?", L"Retouch", MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) ==
           IDYES;
}

}  // namespace

std::wstring freeRetouchedName(const std::wstring& photo)
{
    int number = 1;
    while (fileExists(retouchedName(photo, number)))
        number++;
    return retouchedName(photo, number);
}

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

ExitCode savePhoto(const SaveRequest& request)
{
    SaveRequest current = request;
    std::wstring problem;
    for (int attempt = 0; attempt < (request.ownName ? namesToTry : 1); attempt++) {
        if (trySave(current, current.output, &problem)) {
            tellSaved(current, current.output);
            return exitSaved;
        }
        complain(L"The file could not be written: " + current.output + L" (" + problem + L")");
        current.output = freeRetouchedName(request.source.path);
        if (current.output == request.output) break;  // not the name is what is wrong
    }
    while (askForOutput(&current.output)) {
        current.replace = true;  // the dialog has asked
        if (formatOfName(current.output) == PhotoFormat::Unknown) {
            complain(L"Only jpg, png, tif and bmp files can be written.");
        } else if (trySave(current, current.output, &problem)) {
            tellSaved(current, current.output);
            return exitSaved;
        } else {
            complain(L"The file could not be written: " + current.output + L" (" + problem + L")");
        }
    }
    return leaveRescueFile(request);
}

ExitCode saveAsking(const SaveRequest& request)
{
    SaveRequest current = request;
    current.replace = true;  // the dialog asks
    std::wstring problem;
    for (;;) {
        if (!askForOutput(&current.output)) {
            if (confirmGivingUp()) return exitNothingSaved;
        } else if (formatOfName(current.output) == PhotoFormat::Unknown) {
            complain(L"Only jpg, png, tif and bmp files can be written.");
        } else if (trySave(current, current.output, &problem)) {
            tellSaved(current, current.output);
            return exitSaved;
        } else {
            complain(L"The file could not be written: " + current.output + L" (" + problem + L")");
        }
    }
}
