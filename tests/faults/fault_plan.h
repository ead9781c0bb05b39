// The points of a fault walk: which calls fail in which session.
#pragma once

#include <string>
#include <vector>

#include "tests/faults/fault_counts.h"

struct Point {
    int session;
    std::vector<Fault> faults;
};

struct PlanOptions {
    int perFunction = 6;  // points for a single failing call of each function, two more for failing from there on
    int pairs = 700;      // points of two faults at random
    unsigned seed = 1;    // of the pairs
    std::string file;     // where the points are kept; empty for nowhere
};

// The calls of each function in each session, when nothing fails: callsMade[session][function].
typedef std::vector<std::vector<unsigned>> CallsMade;

// The points of the file if there are any, else new ones, which are written to it.
std::vector<Point> plannedPoints(const PlanOptions& options, const CallsMade& callsMade);
