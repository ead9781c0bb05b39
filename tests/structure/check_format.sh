#!/usr/bin/env bash
# Every C++ file is as clang-format leaves it (.clang-format). The version counts: others break lines elsewhere.
#
# usage: check_format.sh ROOT               names each place that differs; to mend it: clang-format-14 -i FILE
#        check_format.sh --self-test ROOT   spoils copies of files, one by its blanks and one by its lines
set -uo pipefail
formatter=clang-format-14

check() { # folder
    find "$1" -name build -prune -o -name '.?*' -prune -o \( -name '*.cpp' -o -name '*.h' \) -print0 |
        xargs -0 -r "$formatter" --dry-run --Werror
}

self_test() { # root
    local copy status=0
    copy=$(mktemp -d) || return 1
    cp "$1/.clang-format" "$copy"
    cp "$1/image/pixels/pixel_ops.cpp" "$copy/file.cpp"
    check "$copy" || { echo "a sound file is refused"; status=1; }
    sed 's/^    return /  return /' "$1/image/pixels/pixel_ops.cpp" >"$copy/file.cpp"
    check "$copy" 2>/dev/null && { echo "not found: a wrong indent"; status=1; }
    tr '\n' ' ' <"$1/image/pixels/bits_view.h" >"$copy/file.h"
    rm "$copy/file.cpp"
    check "$copy" 2>/dev/null && { echo "not found: a header on one line"; status=1; }
    rm -r "$copy"
    return $status
}

command -v "$formatter" >/dev/null || { echo "$formatter is missing: scripts/install-packages"; exit 1; }
if [ "$1" = --self-test ]; then
    self_test "$2"
else
    check "$1"
fi
