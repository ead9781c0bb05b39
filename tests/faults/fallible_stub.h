// The stubs that stand for fallible calls, one for each function, made from the function's type.
#pragma once

#include <cstdint>
#include <type_traits>

#include "tests/faults/fault_counts.h"

// How a call changes the books.
enum Rule {
    NO_ENTRY,
    MAKES,           // +1 unless it fails
    RELEASES,        // -1 unless it fails
    RELEASES_FIRST,  // -1 when the first argument is not null and the answer is null
    FREES,           // -1 when the first argument is not null
    RESIZES,         // +1 when the first argument is null and the answer is not
    GIVES_SECOND,    // -1 unless it fails or the second argument is null: that is the system's now
};

struct Fallible {
    const char* name;
    intptr_t failure;  // what the function answers when it fails
    bool mayFail;
    Rule rule;
    Kind kind;
    int emptied;   // argument that is a buffer for text, left empty by a failure; -1 for none
    int function;  // its number
    void* stub;
    void* original;  // null until an import is replaced
};

void bookCall(const Fallible& entry, const intptr_t* arguments, intptr_t result);
void emptyBuffer(const Fallible& entry, const intptr_t* arguments);

template <class T>
inline intptr_t number(T value)
{
    if constexpr (std::is_pointer<T>::value)
        return reinterpret_cast<intptr_t>(value);
    else if constexpr (std::is_integral<T>::value)
        return (intptr_t)value;
    else
        return 1;
}

template <class R>
inline R answer(intptr_t value)
{
    if constexpr (std::is_pointer<R>::value)
        return reinterpret_cast<R>(value);
    else
        return (R)value;
}

template <class R, class F, class... A>
inline R relay(const Fallible& entry, A... a)
{
    const F original = (F)entry.original;
    const intptr_t arguments[] = {number(a)..., 0};
    if constexpr (std::is_void<R>::value) {
        original(a...);
        bookCall(entry, arguments, 0);
    } else {
        if (entry.mayFail && failsNow(entry.function)) {
            emptyBuffer(entry, arguments);
            return answer<R>(entry.failure);
        }
        const R result = original(a...);
        const DWORD error = GetLastError();
        bookCall(entry, arguments, number(result));
        SetLastError(error);
        return result;
    }
}

template <int index, class F>
struct Stub;

template <int index, class R, class... A>
struct Stub<index, R(WINAPI*)(A...)> {
    static inline Fallible entry;
    static R WINAPI call(A... a) { return relay<R, R(WINAPI*)(A...), A...>(entry, a...); }
};

#ifndef _WIN64
template <int index, class R, class... A>
struct Stub<index, R(__cdecl*)(A...)> {
    static inline Fallible entry;
    static R __cdecl call(A... a) { return relay<R, R(__cdecl*)(A...), A...>(entry, a...); }
};
#endif

// The entry of the function with this number and type, which lives as long as the program.
template <int index, class F>
inline Fallible* stubEntry(const char* name, intptr_t failure, bool mayFail, Rule rule = NO_ENTRY,
                           Kind kind = MEMORY_BLOCKS, int emptied = -1)
{
    typedef Stub<index, F> Made;
    Made::entry = {name, failure, mayFail, rule, kind, emptied, index, (void*)&Made::call, nullptr};
    return &Made::entry;
}
