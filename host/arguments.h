// The command line of retouch.exe.
#pragma once

#include <string>
#include <vector>

struct HostArguments {
    bool help = false;
    bool overwrite = false;            // an existing file, the photo itself included, may be replaced
    bool flatten = false;              // also where more than pixels of it would be lost
    bool window = false;               // results' names are asked for, and the window stays for more photos
    std::vector<std::wstring> photos;  // one after the other; none: they are chosen in the window
    std::wstring output;               // for a single photo; empty: a name made from the photo's
    std::wstring problem;              // a sentence when the line cannot be understood, else empty
};

// arguments: without the program's name. After "--" everything is a file name.
HostArguments parseArguments(const std::vector<std::wstring>& arguments);
