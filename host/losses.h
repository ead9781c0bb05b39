// What of a photo a file cannot take.
#pragma once

#include "host/photo_file.h"
#include "host/text_ids.h"

struct Losses {
    std::vector<TextId> names;  // texts for the user
    bool severe = false;        // pages, alpha, depth or the kind of colours are among them
};

// For a photo that goes to a file of that format, whatever is edited. written: what is in that file, when it is there
// already; then what could have been lost but was not is left out.
Losses lossesOf(const SourcePhoto& source, PhotoFormat format, const PhotoFacts* written = nullptr);
