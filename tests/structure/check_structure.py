#!/usr/bin/env python3
"""Holds the plan of the house: which folder may include which.

usage: check_structure.py ROOT               the tree as it is; prints each fault and ends with 1 if there is one
       check_structure.py --self-test ROOT   plants faults in a copy in memory and looks whether each is found

The plan is the table of floors in docs/architecture.md, the top floor first. A file may include files of its own
folder and of lower floors. Besides that no units (a header and its source) include each other in a circle, and
what a header declares its own source defines; what changes during a session stands in its record or its extras, never
in a variable of a file; and the tests that docs/oddities.md names exist.
"""
import os
import posixpath
import re
import sys

PLAN = 'docs/architecture.md'
ODDITIES = 'docs/oddities.md'
FREE = {'tests', 'bench', 'docs'}  # may include anything: nothing includes them
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)
FLOOR = re.compile(r'^\| (\w[\w ]*) \| ((?:`[\w/]+/`(?:, )?)+) \|', re.M)
# One at the left margin: `Type name(` up to the `;` or `{` behind the closing parenthesis.
FUNCTION = re.compile(r'^(?!static |typedef |using |#|inline |constexpr |return )'
                      r'(?:extern "C" )?[A-Za-z_][\w:<>,*&\s]*?[\s*&](\w+)\(([^;{}]*)\)\s*(?:const)?\s*([;{])', re.M)

# One at the left margin: a type and names up to the `;`, or to what they begin with.
VARIABLE = re.compile(r'^(?!typedef |using |return |static_assert|struct \w+;|enum \w+;|class \w+;|extern "C")'
                      r'([A-Za-z_][\w:<>,*& ]*?[ *&])(\w+(?:\[[^\]]*\])*(?:, *\w+)*)\s*(?:=[^=]|\{|;)', re.M)

# The variables that belong to no session: the source of each, and why.
OUTLIVES_A_SESSION = {
    'session/ground/module_state.cpp': 'what the module keeps from call to call',
    'session/ground/session_record.cpp': 'the way to the record',
    'session/ground/session_extras.cpp': 'the extras themselves',
    'session/entry.cpp': 'whether a session runs, and the block of its record',
    'image/pixels/vector_level.cpp': 'what the processor can do',
}

MADE = {'session/ground/language_rows.inc', 'host/text_ids.h', 'host/text_languages.inc'}  # by the build

# The headers by which a module shows itself to others, whatever source defines what.
SHOWS_A_MODULE = {'controls/kovctrl32.h', 'include/kovrtch32.h'}

# Modules of their own: the others see them by the headers above at most.
MODULES = ('controls/', 'host/')


def readTree(root):
    """The text of every C++ and resource file, and of the plan, by path."""
    tree = {}
    for folder, folders, names in os.walk(root):
        folders[:] = [name for name in folders if name != 'build' and not name.startswith('.')]
        for name in names:
            path = posixpath.normpath(os.path.relpath(os.path.join(folder, name), root))
            if name.endswith(('.cpp', '.h', '.rc')) or path in (PLAN, ODDITIES):
                with open(os.path.join(folder, name), encoding='utf-8') as file:
                    tree[path] = file.read()
    return tree


def readFloors(plan):
    """[(name, [folder, ...]), ...], the top floor first."""
    return [(name, re.findall(r'`([\w/]+)/`', folders)) for name, folders in FLOOR.findall(plan)]


def isFree(path):
    return path.split('/')[0] in FREE


def moduleOf(path):
    return next((module for module in MODULES if path.startswith(module)), None)


def includesOf(tree):
    """(includer, included or None, as written) of every include in quotes."""
    for path, text in sorted(tree.items()):
        if path in (PLAN, ODDITIES):
            continue
        for written in INCLUDE.findall(text):
            if written in MADE:
                continue
            near = posixpath.normpath(posixpath.join(posixpath.dirname(path), written))
            found = next((each for each in (written, near) if each in tree), None)
            yield path, found, written


def floorFaults(tree):
    floors = readFloors(tree[PLAN])
    level, floorName = {}, {}
    for height, (name, folders) in enumerate(reversed(floors)):
        for folder in folders:
            if folder in level:
                yield f'{PLAN}: {folder}/ stands on two floors'
            level[folder], floorName[folder] = height, name
    used = {posixpath.dirname(path) for path in tree if path not in (PLAN, ODDITIES) and not isFree(path)}
    for folder in sorted(used - level.keys()):
        yield f'{folder}/ is on no floor of {PLAN}'
    for folder in sorted(level.keys() - used):
        yield f'{PLAN}: {folder}/ has no source'

    for path, target, written in includesOf(tree):
        if isFree(path):
            continue
        if target is None:
            yield f'{path} -> {written}: there is no such file'
            continue
        here, there = posixpath.dirname(path), posixpath.dirname(target)
        if here == there or here not in level:
            continue
        if there not in level:
            yield f'{path} -> {target}: outside the floors'
        elif level[there] > level[here]:
            yield f'{path} -> {target}: up, from {floorName[here]} to {floorName[there]}'
        elif level[there] == level[here]:
            yield f'{path} -> {target}: folders of one floor, {floorName[here]}'
        elif moduleOf(target) not in (None, moduleOf(path)) and target not in SHOWS_A_MODULE:
            yield f'{path} -> {target}: into another module'


def circleThrough(start, arrows):
    """The shortest way from a unit back to itself, or None."""
    ways = [[start]]
    seen = set()
    for way in ways:
        for following in sorted(arrows.get(way[-1], ())):
            if following == start:
                return way
            if following not in seen:
                seen.add(following)
                ways.append(way + [following])
    return None


def circleFaults(tree):
    arrows = {}
    for path, target, _ in includesOf(tree):
        here, there = posixpath.splitext(path)[0], target and posixpath.splitext(target)[0]
        if there and here != there:
            arrows.setdefault(here, set()).add(there)
    told = set()
    for unit in sorted(arrows):
        circle = circleThrough(unit, arrows)
        if circle and not told.intersection(circle):
            told.update(circle)
            yield 'a circle: ' + ' -> '.join(circle + [unit])


def functionsIn(text, ending):
    text = re.sub(r'//[^\n]*', '', text)
    return [name for name, _, end in FUNCTION.findall(text) if end in ending]


def speaksFor(header, source, tree):
    """A header speaks for the source of its name; one without for those of its folder that begin with the same word
    (jpeg_file.h for jpeg_read.cpp and jpeg_write.cpp)."""
    own = header[:-1] + 'cpp'
    if own in tree:
        return source == own
    word = posixpath.basename(header).split('_')[0].removesuffix('.h')
    return (posixpath.dirname(header) == posixpath.dirname(source) and
            posixpath.splitext(posixpath.basename(source))[0].split('_')[0] == word)


def strayFaults(tree):
    """Functions that a header declares and a source for which it does not speak defines."""
    definers = {}
    for path, text in sorted(tree.items()):
        if path.endswith('.cpp') and not isFree(path):
            for name in functionsIn(text, '{'):
                definers.setdefault(name, set()).add(path)
    for path, text in sorted(tree.items()):
        if not path.endswith('.h') or isFree(path) or path in SHOWS_A_MODULE:
            continue
        for name in functionsIn(text, ';'):
            where = definers.get(name, set())
            if where and not any(speaksFor(path, source, tree) for source in where):
                yield f'{path} declares {name}, which {", ".join(sorted(where))} defines'


def stateFaults(tree):
    """Variables of a file that change. A reference into the extras is as good as the extras."""
    for path, text in sorted(tree.items()):
        if not path.endswith('.cpp') or isFree(path) or path.startswith(MODULES) or path in OUTLIVES_A_SESSION:
            continue
        for kind, name in VARIABLE.findall(re.sub(r'//[^\n]*|/\*.*?\*/', '', text)):
            constant = re.search(r'\bconstexpr\b|\bconst\b(?!.*\*)|\*\s*const\b', kind)
            of_extras = re.search(rf'&\s*{re.escape(name)} = sessionExtras\b', text)
            type_only = re.match(r'(struct|enum|class|namespace|union)\b', kind)
            if not constant and not of_extras and not type_only:
                yield f'{path}: {name} is a variable that no session owns'
    for path in sorted(OUTLIVES_A_SESSION.keys() - tree.keys()):
        yield f'{path} may have variables of its own, and is gone'


def oddityFaults(tree):
    """Every row of the oddities names tests, and those exist."""
    tests = {'.'.join(found) for path, text in tree.items() if path.startswith('tests/')
             for found in re.findall(r'^TEST(?:_F|_P)?\((\w+),\s*(\w+)\)', text, re.M)}
    for row in tree[ODDITIES].splitlines():
        if not row.startswith('| ') or row.startswith('| What |'):
            continue
        named = re.findall(r'`(\w+\.\w+)`', row.split(' | ')[-1])
        if not named:
            yield f'{ODDITIES}: no test holds: {row}'
        for test in named:
            if test not in tests:
                yield f'{ODDITIES}: there is no test {test}'


def faultsOf(tree):
    return [*floorFaults(tree), *circleFaults(tree), *strayFaults(tree), *stateFaults(tree), *oddityFaults(tree)]


def selfTest(tree):
    def plant(what, expected, changes):
        found = set(faultsOf({**tree, **changes})) - before
        if not any(expected in fault for fault in found):
            print(f'not found: {what} (expected "{expected}", found {sorted(found)})')
            return False
        return True

    def with_include(path, header):
        return {path: f'#include "{header}"\n' + tree[path]}

    before = set(faultsOf(tree))
    pixels, record = 'image/pixels/pixel_ops.h', 'session/ground/session_record.h'
    without_ground = re.sub(r'^\| ground \|.*\n', '', tree[PLAN], flags=re.M)
    return all([
        plant('an include upward', f'{pixels} -> {record}: up, from pixels to ground', with_include(pixels, record)),
        plant('an include written from its own folder', f'{pixels} -> {record}: up, from pixels to ground',
              with_include(pixels, '../../session/ground/session_record.h')),
        plant('an include between folders of one floor', 'folders of one floor, kernels',
              with_include('text/kernels/text_line.cpp', 'tools/kernels/pixel_mix.h')),
        plant('an include upward inside a module', 'host/codecs/thumbnail.h -> host/rescue.h: up, from codecs to modules',
              with_include('host/codecs/thumbnail.h', 'host/rescue.h')),
        plant('an include into a module', 'image/packed_bitmap.cpp -> host/photo/photo_rows.h: into another module',
              with_include('image/packed_bitmap.cpp', 'host/photo/photo_rows.h')),
        plant('an include of a test', 'outside the floors',
              with_include('image/pixels/pixel_ops.cpp', 'tests/reference/tiff_reference.h')),
        plant('an include of nothing', 'there is no such file', with_include(pixels, 'image/nothing.h')),
        plant('a folder without a floor', 'session/ground/ is on no floor', {PLAN: without_ground}),
        plant('a new folder', 'image/colours/ is on no floor', {'image/colours/new.cpp': ''}),
        plant('a folder that is gone', 'gone/ has no source',
              {PLAN: tree[PLAN].replace('`image/pixels/`', '`image/pixels/`, `gone/`')}),
        plant('a folder told twice', 'stands on two floors',
              {PLAN: tree[PLAN].replace('`image/pixels/`', '`image/pixels/`, `image/`')}),
        plant('a circle of two', 'a circle: image/pixels/bits_view -> image/pixels/pixel_ops ->',
              with_include('image/pixels/bits_view.h', pixels)),
        plant('a circle of three', 'a circle: image/pixels/a -> image/pixels/b -> image/pixels/c ->',
              {f'image/pixels/{a}.h': f'#include "image/pixels/{b}.h"\n' for a, b in ('ab', 'bc', 'ca')}),
        *(plant('a variable of a file', 'image/pixels/a.cpp: kept is a variable that no session owns',
                {'image/pixels/a.cpp': f'namespace {{\n\n{variable}\n\n}}\n'})
          for variable in ('int kept;', 'static Place kept = {};', 'const char* kept{"a"};', 'HWND& kept = other;')),
        plant('an oddity without its test', 'there is no test Gone.Test',
              {ODDITIES: tree[ODDITIES] + '| odd | somebody | `Gone.Test` |\n'}),
        plant('an oddity without any test', 'no test holds', {ODDITIES: tree[ODDITIES] + '| odd | somebody | none |\n'}),
        plant('a declaration without a source', 'image/pixels/a.h declares strayed',
              {'image/pixels/a.h': 'int* strayed(void (*each)(int));\n',
               'image/pixels/b.cpp': 'int* strayed(void (*each)(int))\n{\n}\n'}),
        plant('a strayed declaration', 'image/pixels/a.h declares strayed, which image/pixels/b.cpp defines',
              {'image/pixels/a.h': 'void strayed(int first,\n             int second);\n', 'image/pixels/a.cpp': '',
               'image/pixels/b.cpp': 'void strayed(int first, int second)\n{\n}\n'}),
    ])


def main(arguments):
    testing = arguments[:1] == ['--self-test']
    roots = arguments[1:] if testing else arguments
    if len(roots) != 1:
        sys.exit(__doc__)
    tree = readTree(roots[0])
    if testing:
        return 0 if selfTest(tree) else 1
    faults = faultsOf(tree)
    for fault in faults:
        print(fault)
    print(f'{len(tree)} files, {len(readFloors(tree[PLAN]))} floors, {len(faults)} faults')
    return 1 if faults else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
