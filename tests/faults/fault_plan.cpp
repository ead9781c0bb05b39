#include "tests/faults/fault_plan.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

#include "tests/faults/fallible.h"

// Up to `count` of the calls 0 .. calls - 1, the first and the last among them.
static std::vector<unsigned> spread(unsigned calls, int count)
{
    std::vector<unsigned> chosen;
    if (calls == 0) return chosen;
    const unsigned wanted = calls < (unsigned)count ? calls : (unsigned)count;
    for (unsigned i = 0; i < wanted; ++i)
        chosen.push_back(wanted == 1 ? 0 : (unsigned)((unsigned long long)i * (calls - 1) / (wanted - 1)));
    return chosen;
}

static std::vector<Point> allPoints(const PlanOptions& options, const CallsMade& callsMade)
{
    std::vector<Point> points;
    for (int session = 0; session < (int)callsMade.size(); ++session) {
        const std::vector<unsigned>& calls = callsMade[(size_t)session];
        for (int function = 0; function < fallibleCount(); ++function) {
            for (const unsigned call : spread(calls[(size_t)function], options.perFunction))
                points.push_back({session, {{function, call, false}}});
            for (const unsigned call : spread(calls[(size_t)function], 2))
                points.push_back({session, {{function, call, true}}});
        }
    }
    std::mt19937 random(options.seed);
    for (int i = 0; i < options.pairs; ++i) {
        const int session = (int)(random() % (unsigned)callsMade.size());
        Point point = {session, {}};
        while (point.faults.size() < 2) {
            const int function = (int)(random() % (unsigned)fallibleCount());
            const unsigned calls = callsMade[(size_t)session][(size_t)function];
            if (calls) point.faults.push_back({function, (unsigned)random() % calls, false});
        }
        points.push_back(point);
    }
    return points;
}

// A line for each: session, then function, call and persistence of each fault.
static void writePlan(const std::string& path, const std::vector<Point>& points)
{
    FILE* const file = fopen(path.c_str(), "w");
    if (!file) return;
    for (const Point& point : points) {
        fprintf(file, "%d", point.session);
        for (const Fault& fault : point.faults)
            fprintf(file, " %s %u %d", fallibleName(fault.function), fault.call, fault.persistent);
        fprintf(file, "\n");
    }
    fclose(file);
}

static Point readPoint(const char* line)
{
    Point point = {atoi(line), {}};
    char name[64];
    unsigned call;
    int persistent, length;
    for (line += strcspn(line, " "); sscanf(line, "%63s %u %d%n", name, &call, &persistent, &length) == 3;
         line += length)
        point.faults.push_back({fallibleNamed(name), call, persistent != 0});
    return point;
}

static std::vector<Point> readPlan(const std::string& path)
{
    std::vector<Point> points;
    char line[256];
    if (FILE* const file = fopen(path.c_str(), "r")) {
        while (fgets(line, sizeof line, file))
            points.push_back(readPoint(line));
        fclose(file);
    }
    return points;
}

std::vector<Point> plannedPoints(const PlanOptions& options, const CallsMade& callsMade)
{
    if (options.file.empty()) return allPoints(options, callsMade);
    std::vector<Point> points = readPlan(options.file);
    if (points.empty()) {
        points = allPoints(options, callsMade);
        writePlan(options.file, points);
    }
    return points;
}
