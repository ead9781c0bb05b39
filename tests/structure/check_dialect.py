#!/usr/bin/env python3
"""Holds what docs/style.md says beyond formatting, as far as the text alone tells it.

usage: check_dialect.py ROOT               every C++ file as it is; prints each fault and ends with 1 if there is one
       check_dialect.py --self-test ROOT   looks whether faults in made-up files are found
"""
import os
import re
import sys

SCALAR = (r'(?:unsigned |signed )?(?:u?int(?:8|16|32|64)?_t|int|long|char|wchar_t|WCHAR|BYTE|WORD|DWORD|UINT|LONG|COLORREF|'
          r'size_t|ptrdiff_t|SIZE_T|UINT_PTR|float|double|bool)')
NUMBER = re.compile(rf'^(?:static |inline )?const {SCALAR} (\w+) ?[={{]', re.M)
TEXT = re.compile(rf'^(?:static |inline )?const {SCALAR} (\w+)\[\w*\] =\s*(?:L|u8)?"', re.M)
SMALL = re.compile(rf'^constexpr {SCALAR} ((?:\w+ = [^,;]*, )*\w*[a-z]\w*)(?:\[\w*\] =\s*(?:L|u8)?"| = )', re.M)
UNNAMED_ENUM = re.compile(r'^ *enum (?:: \w+ )?\{', re.M)
UNNAMED = re.compile(r'^namespace \{', re.M)
# What is compiled once for every width of vectors: a header included inside the namespace, and what it needs.
WIDTH = re.compile(r'^namespace \{$(?:(?!^\}  // namespace).)*?^#include.*?^\}  // namespace$', re.M | re.S)
NAMED = re.compile(r'^namespace \w+ \{$.*?^\}  // namespace \w+$', re.M | re.S)
TYPE = re.compile(r'^(?:struct|class|union|enum(?: class)?) (\w+)[^;\n(]*\{', re.M)
# One at the left margin that has a body, and is no member of a type.
FUNCTION = re.compile(r'^(?!static |LANES_INLINE |inline |constexpr |template |struct \w+ \{|class |return |#|TEST|extern )'
                      r'[A-Za-z_][\w:<>,*&\s]*?[\s*&](\w+)\([^;{}]*\)\s*\{', re.M)
BY_HAND = re.compile(r'\b(?:GlobalUnlock|unlockBlock)\(')

# Floors of the library; controls/ and host/ are linked by themselves.
LIBRARY = ('canvas/', 'color/', 'image/', 'library/', 'selection/', 'session/', 'text/', 'tools/')

# What calls them is no source of the tree.
CALLED_FROM_OUTSIDE = {'main', 'wmain', 'DllMain', 'LLVMFuzzerInitialize', 'LLVMFuzzerTestOneInput'}

# Where a lock outlives a function, or is what the others are made of.
LOCKS = ('image/bitmap_block.cpp', 'image/bitmap_locks.cpp', 'image/bitmap_block.h', 'image/packed_bitmap.cpp',
         'image/original_image.cpp', 'session/ground/locked_block.cpp', 'tools/painting/undo_history.cpp',
         'host/locked_photo.h', 'controls/locked_dib.h')

GREEDY = re.compile(r'\b(?:malloc|calloc|realloc)\(')
TAKER = 'image/pixels/scarce_memory.cpp'


def readTree(root):
    tree = {}
    for folder, folders, names in os.walk(root):
        folders[:] = [name for name in folders if name != 'build' and not name.startswith('.')]
        for name in names:
            path = os.path.relpath(os.path.join(folder, name), root).replace(os.sep, '/')
            if name.endswith(('.cpp', '.h')) and not path.startswith(('include/', 'samples/')):
                with open(os.path.join(folder, name), encoding='utf-8') as file:
                    tree[path] = file.read()
    return tree


def lineOf(text, place):
    return text.count('\n', 0, place) + 1


def lastClauses(text):
    """(place, text) of what each `for` with two semicolons does after a round."""
    for found in re.finditer(r'\bfor \(', text):
        depth, semicolons, place = 1, [], found.end()
        while depth and place < len(text):
            depth += {'(': 1, ')': -1}.get(text[place], 0)
            if text[place] == ';' and depth == 1:
                semicolons.append(place)
            place += 1
        if len(semicolons) == 2:
            yield found.start(), text[semicolons[1] + 1:place - 1]


def loopFaults(text):
    for place, clause in lastClauses(text):
        if re.search(r'\w(?:\+\+|--)', clause):
            yield place, 'a loop that does not count with ++ or -- in front'
    for found in re.finditer(r'\bwhile \((?:true|TRUE|1)\)', text):
        yield found.start(), 'a loop without an end is for (;;)'


def constantFaults(text, told_elsewhere):
    for pattern in (NUMBER, TEXT):
        for found in pattern.finditer(text):
            if found[1] not in told_elsewhere:
                yield found.start(), f'{found[1]} is not constexpr'
    for found in SMALL.finditer(text):
        yield found.start(), f'{found[1]} is a constant and not in capitals'
    for found in UNNAMED_ENUM.finditer(text):
        yield found.start(), 'an enum without a name'


def withoutWidths(text):
    return WIDTH.sub(lambda found: '\n' * found[0].count('\n'), text)


def hidingFaults(text, declared):
    text = withoutWidths(text)
    for found in UNNAMED.finditer(text):
        yield found.start(), 'an unnamed namespace: static hides what one file has for itself'
    for found in FUNCTION.finditer(text):
        if found[1] not in declared:
            yield found.start(), f'{found[1]} is in no header: static hides what one file has for itself'


def typeFaults(tree):
    """Types of one name, wherever they are: the linker would take their functions for the same."""
    types = {}
    for path, text in sorted(tree.items()):
        for name in sorted(set(TYPE.findall(NAMED.sub('', withoutWidths(text))))):
            if name in types:
                yield f'{path}: {name} is a type of {types[name]}, too'
            types[name] = path


def faultsOf(tree):
    told_elsewhere = {name for text in tree.values() for name in re.findall(r'^extern const [\w ]+ (\w+)', text, re.M)}
    declared = CALLED_FROM_OUTSIDE.union(*(re.findall(r'\b(\w+)\(', text) for path, text in tree.items()
                                           if path.endswith('.h')))
    for path, text in sorted(tree.items()):
        faults = [*loopFaults(text), *constantFaults(text, told_elsewhere)]
        if path.endswith('.cpp'):
            faults += hidingFaults(text, declared)
        if path.startswith((*LIBRARY, 'controls/', 'host/')) and path not in LOCKS and BY_HAND.search(text):
            faults.append((BY_HAND.search(text).start(), 'a lock that does not end with its scope'))
        if path.startswith(LIBRARY) and path != TAKER and GREEDY.search(text):
            faults.append((GREEDY.search(text).start(), 'memory that is not taken with takeMemory and its like'))
        for place, fault in faults:
            yield f'{path}:{lineOf(text, place)}: {fault}'
    yield from typeFaults(tree)


def selfTest():
    planted = {
        'for (int i = 0; i < 3; i++)\n': 'a loop that does not count',
        'for (int i = 0; i < f(3); a += 2, i--)\n': 'a loop that does not count',
        'while (true) {\n': 'is for (;;)',
        'static const int LIMIT = 3;\n': 'LIMIT is not constexpr',
        'const wchar_t NAME[] = L"a";\n': 'NAME is not constexpr',
        'constexpr int limit = 3;\n': 'limit is a constant and not in capitals',
        'enum { LIMIT = 3 };\n': 'an enum without a name',
        'namespace {\n\nint f();\n\n}  // namespace\n': 'an unnamed namespace',
        'int strayed(int a,\n            int b)\n{\n}\n': 'strayed is in no header',
        '    GlobalUnlock(block);\n': 'does not end with its scope',
        'struct Once {\n};\n': 'Once is a type of',
        '    a = (char*)malloc(3);\n': 'memory that is not taken',
    }
    found = {text: list(faultsOf({'image/one.cpp': text, 'image/other.h': 'struct Once {\n};\n'})) for text in planted}
    missed = [text for text, expected in planted.items() if not any(expected in fault for fault in found[text])]
    clean = ('for (int i = 0; i < 3; ++i)\n    a[n++] = 0;\nconstexpr int LIMIT = 3, OTHER = 4;\nstatic const int steps[] = {1};\n'
             'namespace {\n\nint load()\n{\n}\n#include "image/lanes.h"\n\n}  // namespace\n')
    false = list(faultsOf({'image/one.cpp': clean}))
    for text in missed:
        print(f'not found: {text!r}')
    for fault in false:
        print(f'wrongly found: {fault}')
    return not missed and not false


def main(arguments):
    if arguments[:1] == ['--self-test']:
        return 0 if selfTest() else 1
    if len(arguments) != 1:
        sys.exit(__doc__)
    tree = readTree(arguments[0])
    faults = list(faultsOf(tree))
    for fault in faults:
        print(fault)
    print(f'{len(tree)} files, {len(faults)} faults')
    return 1 if faults else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
