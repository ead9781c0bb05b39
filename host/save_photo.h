// Getting the edited picture into a file, whatever fails on the way.
#pragma once

#include "host/losses.h"
#include "host/report.h"

struct SaveRequest {
    HGLOBAL image;
    SourcePhoto source;
    std::wstring output;
    bool replace = false;  // an existing file may be replaced
    bool ownName = false;  // the name was made up here: another one is as good
};

// Before a session: keeps memory back for its save. False when there is not so much.
bool keepMemoryForSaving();

// Tries the file that was meant, then another name, then asks, and at last leaves a rescue file; says what
// happened.
ExitCode savePhoto(const SaveRequest& request);

// Asks for a file until the photo is saved or the user gives the changes up. mayLeave: nothing is given up by
// cancelling, since the photo is in a file already. request->output starts as the suggestion and ends as what was
// chosen.
ExitCode saveAsking(SaveRequest* request, bool mayLeave);

// "the alpha channel, further pages"
std::wstring inOneLine(const Losses& losses);

// "photo-retouched.jpg", or the first of its followers that is not there yet; shorter where the place takes no such
// name.
std::wstring freeRetouchedName(const std::wstring& photo);

// suggestion: the name the dialog starts with, replaced by the one chosen. False when the user cancels.
bool askForOutput(std::wstring* suggestion);
