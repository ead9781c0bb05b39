// What of a photo a file cannot take.
#pragma once

#include "host/photo_file.h"

struct Losses {
    std::vector<std::wstring> names;  // in words, for the user
    bool severe = false;              // pages, alpha, depth or the kind of colours are among them
};

// For a photo that goes to a file of that format, whatever is edited.
Losses lossesOf(const SourcePhoto& source, PhotoFormat format);

// "the alpha channel, further pages"
std::wstring inOneLine(const Losses& losses);
