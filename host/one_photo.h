// One photo's way from its file through the editor into a file.
#pragma once

#include "host/save_photo.h"

struct PhotoTask {
    std::wstring photo;
    std::wstring output;     // empty: a name made from the photo's
    bool overwrite = false;  // an existing file may be replaced; without output the photo itself
    bool flatten = false;    // also where more than pixels of it would be lost
    bool ask = false;        // where the result goes is asked after the session
};

// What happened has been told. After exitSaved *done holds the picture and where it came from; its image is then the
// caller's to free. done may be null.
ExitCode retouchPhoto(const PhotoTask& task, SaveRequest* done);

// Once a run: offers to go on with what an earlier program, that did not come to its end, has left.
void offerAbandonedWork();
