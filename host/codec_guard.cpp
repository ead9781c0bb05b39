#include "host/codec_guard.h"

#include <csignal>
#include <new>
#include <windows.h>

static LastWord wordWithoutMemory, wordAfterCrash;
static LPTOP_LEVEL_EXCEPTION_FILTER filterBefore;
static std::new_handler handlerBefore;
static void (*abortBefore)(int);

// What fails while the last word is said ends the program.
static void say(LastWord word)
{
    unguardCodecs();
    word();
}

static void memoryIsShort()
{
    say(wordWithoutMemory);
}

static LONG WINAPI codecCrashed(EXCEPTION_POINTERS*)
{
    say(wordAfterCrash);
    return EXCEPTION_EXECUTE_HANDLER;
}

static void codecGaveUp(int)
{
    say(wordAfterCrash);
}

void guardCodecs(LastWord withoutMemory, LastWord afterCrash)
{
    wordWithoutMemory = withoutMemory;
    wordAfterCrash = afterCrash;
    filterBefore = SetUnhandledExceptionFilter(codecCrashed);
    handlerBefore = std::set_new_handler(memoryIsShort);
    abortBefore = signal(SIGABRT, codecGaveUp);
}

void unguardCodecs()
{
    signal(SIGABRT, abortBefore);
    std::set_new_handler(handlerBefore);
    SetUnhandledExceptionFilter(filterBefore);
}
