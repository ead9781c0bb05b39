// The fault walk: sessions with the real pointer, in which one call after another that the libraries make fails; one
// call, a call and all that follow, or two at random. Whatever fails, the host must get through.
//
//     fault_walk [--from N] [--every E] [--per-function K] [--pairs COUNT] [--seed S] [--session NAME] [--plan FILE]
//
// How often a call is made differs a little from run to run, and with it the points. With --plan they are read from
// this file if there is one, else written to it, so that one walk can be taken in parts. Prints "POINTS n" first, then
// "POINT i ..." before and "TAKEN i" after each, "FAILED i ..." for each that does harm, and "DONE" at the end. Without
// DONE it has crashed or hung at the last point named; scripts/faults goes on behind that.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>

#include "tests/faults/fallible.h"
#include "tests/faults/fault_counts.h"
#include "tests/faults/fault_files.h"
#include "tests/faults/fault_plan.h"
#include "tests/faults/fault_sessions.h"
#include "tests/session/host_image.h"

typedef std::vector<uint8_t> Bytes;

struct PlainRun {
    Settings settings;            // afterwards
    std::set<std::string> files;  // of the library of selections, with their sizes
};

struct Options {
    int from = 0, every = 1;
    std::string session;
    PlanOptions plan;
};

static FaultHost host;
static HostImage photo;
static Bytes original;
static UserFiles user;
static std::vector<PlainRun> plainRuns;
static CallsMade callsMade;  // in these
static volatile LONG pointNumber;
static volatile LONG pointStarted;

static void restoreImage()
{
    memcpy(GlobalLock(photo.block), original.data(), original.size());
    GlobalUnlock(photo.block);
}

// ---- playing

static void play(const FaultSession& session)
{
    if (openSession(&host)) session.play(&host);
    findWindows(&host);
    leaveSession(&host, session.leaveBy);
}

static PlainRun playPlain(const FaultSession& session)
{
    restoreFiles(host.directory, user);
    restoreImage();
    startCounting({});
    play(session);
    callsMade.emplace_back();
    for (int function = 0; function < fallibleCount(); ++function)
        callsMade.back().push_back(callsOf(function));
    PlainRun run;
    run.settings = settingsIn(host.directory);
    for (const auto& file : libraryIn(host.directory))
        run.files.insert(file.first + " " + std::to_string(file.second.size()));
    return run;
}

// ---- what must hold afterwards

static std::string complaints;

static void complain(const std::string& what)
{
    complaints += complaints.empty() ? what : "; " + what;
}

static void checkHost()
{
    if (host.running) complain("the session does not end");
    if (host.disabledLeft) complain("the host stays disabled");
    if (host.classLeft) complain("the window class stays");
    if (host.windowsLeft) complain("windows stay: " + std::to_string(host.windowsLeft));
    if (host.quitLeft) complain("a quit message stays");
}

static void checkImage(const FaultSession& session)
{
    // What OK has adjusted stays, and what it adjusts follows from the clicks that got through.
    if (host.result == 0 && !session.adjusts && snapshot(photo) != original)
        complain("0 returned with a changed image");
}

// Every value is the user's, or what this session makes of it.
static void checkSettings(const FaultSession& session, const PlainRun& plain)
{
    const Settings now = settingsIn(host.directory);
    for (const auto& before : user.settings) {
        const auto found = now.find(before.first);
        if (session.setting && before.first == session.setting && found != now.end()) continue;
        if (found == now.end())
            complain("setting " + before.first + " is gone");
        else if (found->second != before.second && found->second != plain.settings.find(before.first)->second)
            complain("setting " + before.first + " is " + found->second + ", was " + before.second + ", wanted " +
                     plain.settings.find(before.first)->second);
    }
}

static bool isKnownFile(const std::string& name, size_t size, const PlainRun& plain)
{
    if (plain.files.count(name + " " + std::to_string(size))) return true;
    return name.size() > 4 && name.compare(name.size() - 4, 4, ".lst") == 0 && size > 0;
}

static void checkLibrary(const FaultSession& session, const PlainRun& plain)
{
    const StoredFiles now = libraryIn(host.directory);
    for (const auto& before : user.library) {
        const auto found = now.find(before.first);
        const bool mayGo = strcmp(session.name, "library") == 0;
        if (before.first.find(".lst") != std::string::npos) continue;
        if (found == now.end() ? !mayGo : found->second != before.second)
            complain("the stored selection " + before.first + " is damaged");
    }
    for (const auto& file : now)
        if (!user.library.count(file.first) && !isKnownFile(file.first, file.second.size(), plain) &&
            !(strcmp(session.name, "library") == 0 && file.first.find(".tif") != std::string::npos &&
              file.second.size() > 1000))
            complain("a file stays: " + file.first + " of " + std::to_string(file.second.size()) + " bytes");
    const std::set<std::string> program = {"KOVRTCH32.dll", "KOVCTRL32.dll", "KOVRTCH.INI"};
    for (const std::string& name : filesIn(host.directory))
        if (!program.count(name)) complain("a file stays beside the library: " + name);
}

static void checkBooks(const long* before)
{
    for (int kind = 0; kind < KIND_COUNT; ++kind)
        if (outstanding(kind) != before[kind])
            complain(std::string(kindName(kind)) + " left: " + std::to_string(outstanding(kind) - before[kind]));
}

// After every fourth point, and after each with a complaint: a session costs as much as a point.
static int untilPlain;

static void checkPlainSession()
{
    untilPlain = 4;
    restoreFiles(host.directory, user);
    restoreImage();
    startCounting({});
    const bool opened = openSession(&host);
    leaveSession(&host, 2);
    if (!opened) complain("the next session does not open");
    if (host.result != 0 || host.running) complain("the next session does not end as by Close");
    if (snapshot(photo) != original) complain("the next session changes the image");
}

// ---- the walk

static std::string describe(const Point& point)
{
    std::string text = faultSessions[point.session].name;
    for (const Fault& fault : point.faults)
        text += std::string(" ") + fallibleName(fault.function) + "#" + std::to_string(fault.call) +
                (fault.persistent ? "..." : "");
    return text;
}

static void takePoint(int number, const Point& point)
{
    InterlockedExchange(&pointStarted, (LONG)GetTickCount());
    InterlockedExchange(&pointNumber, number);
    printf("POINT %d %s\n", number, describe(point).c_str());
    fflush(stdout);
    const FaultSession& session = faultSessions[point.session];
    const PlainRun& plain = plainRuns[(size_t)point.session];
    restoreFiles(host.directory, user);
    restoreImage();
    long before[KIND_COUNT];
    for (int kind = 0; kind < KIND_COUNT; ++kind)
        before[kind] = outstanding(kind);
    complaints.clear();
    startCounting(point.faults);
    play(session);
    disarm();
    checkHost();
    checkBooks(before);
    checkImage(session);
    checkSettings(session, plain);
    checkLibrary(session, plain);
    if (!complaints.empty() || --untilPlain <= 0) checkPlainSession();
    if (!complaints.empty()) printf("FAILED %d %s: %s\n", number, describe(point).c_str(), complaints.c_str());
    if (host.running) ExitProcess(96);  // nothing can be tried beside a session that does not end
    printf("TAKEN %d\n", number);
    fflush(stdout);
}

// What the user has before: settings of his own, one stored selection.
static void prepareUser()
{
    photo = makePhoto(PHOTO_WIDTH, PHOTO_HEIGHT, 7);
    host.image = photo.block;
    original = snapshot(photo);
    startCounting({});
    play(faultSessions[faultSessionCount - 1]);
    for (int i = 0; i < faultSessionCount; ++i)
        if (strcmp(faultSessions[i].name, "library") == 0) play(faultSessions[i]);
    user = userFilesIn(host.directory);
    for (int i = 0; i < faultSessionCount; ++i)
        plainRuns.push_back(playPlain(faultSessions[i]));
}

static LONG WINAPI onCrash(EXCEPTION_POINTERS* exception)
{
    const BYTE* at = (const BYTE*)exception->ExceptionRecord->ExceptionAddress;
    printf("CRASH at %s+%lx\n", at > (BYTE*)host.library ? "library" : "?", (unsigned long)(at - (BYTE*)host.library));
    fflush(stdout);
    TerminateProcess(GetCurrentProcess(), 97);
    return EXCEPTION_EXECUTE_HANDLER;
}

// Milliseconds. On an overloaded machine a point may take longer: then it is walked again, alone.
constexpr LONG HANG_LIMIT = 60000;

static DWORD WINAPI watchForHangs(void*)
{
    for (;;) {
        Sleep(1000);
        if (pointStarted && (LONG)GetTickCount() - pointStarted > HANG_LIMIT) {
            printf("HANG\n");
            fflush(stdout);
            TerminateProcess(GetCurrentProcess(), 98);
        }
    }
}

static Options readOptions(int count, char** words)
{
    Options options;
    for (int i = 1; i + 1 < count; i += 2) {
        const std::string name = words[i];
        const int value = atoi(words[i + 1]);
        if (name == "--from") options.from = value;
        if (name == "--every") options.every = value > 0 ? value : 1;
        if (name == "--per-function") options.plan.perFunction = value;
        if (name == "--pairs") options.plan.pairs = value;
        if (name == "--seed") options.plan.seed = (unsigned)value;
        if (name == "--session") options.session = words[i + 1];
        if (name == "--plan") options.plan.file = words[i + 1];
    }
    return options;
}

int main(int count, char** words)
{
    const Options options = readOptions(count, words);
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    SetUnhandledExceptionFilter(onCrash);
    startFaultHost(&host);
    CloseHandle(CreateThread(nullptr, 0, watchForHangs, nullptr, 0, nullptr));
    prepareUser();
    const std::vector<Point> points = plannedPoints(options.plan, callsMade);
    printf("POINTS %d\n", (int)points.size());
    for (int i = options.from; i < (int)points.size(); i += options.every)
        if (options.session.empty() || options.session == faultSessions[points[(size_t)i].session].name)
            takePoint(i, points[(size_t)i]);
    printf("DONE\n");
    return 0;
}
