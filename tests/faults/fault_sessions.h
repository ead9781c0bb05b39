// What a person does in the sessions of the fault walk: every tool, the contrast dialog, selections, text, the library.
#pragma once

#include "tests/faults/fault_host.h"

struct FaultSession {
    const char* name;
    void (*play)(FaultHost* host);  // between opening and leaving
    int leaveBy;                    // 2 Close, 8 Save
    bool adjusts;                   // the contrast dialog's OK changes what Close goes back to
    const char* setting;            // one that depends on which clicks got through; null for none
};

extern const FaultSession faultSessions[];
extern const int faultSessionCount;
