// What this program is at work on, noted in a folder of its own so that the next start can tidy up and bring
// back what a crash left behind. A record is held open for as long as its program lives.
#pragma once

#include <string>
#include <vector>

// Starts the record of one photo's session. Without a place to write to, the work goes on unrecorded.
void openWorkRecord(const std::wstring& photo);

// The work has come to a good end: the record goes, and the rescued picture with it.
void closeWorkRecord();

// temporary: the file that is being written, empty: none any more. target: empty, or the file over which the
// finished temporary is being copied.
void noteTemporary(const std::wstring& temporary, const std::wstring& target);

// Where the picture goes while it is edited; empty when there is no record.
std::wstring rescueFileName();

struct AbandonedWork {
    std::wstring record;
    std::wstring photo;    // as it was named
    std::wstring picture;  // the rescued picture, a bitmap file
};

// Tidies up after programs that did not end well, and gives what can be gone on with.
std::vector<AbandonedWork> findAbandonedWork();
void forgetAbandonedWork(const AbandonedWork& work);

// The folder for what could be saved nowhere else, with its separator; made when it is not there.
std::wstring rescueFolder();
