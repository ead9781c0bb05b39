#!/usr/bin/env bash
# check_retouch.sh SCRIPT: what the script says, and how it ends, when it is called wrongly; which build it runs; and what it
# has installed.
set -uo pipefail
script=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
failures=0

# expect CODE SENTENCE ARGUMENT...: the exit code, and words that must be said on standard error.
expect() {
    local code=$1 sentence=$2 said status
    shift 2
    said=$("$script" "$@" 2>&1 >/dev/null)
    status=$?
    if [ "$status" -ne "$code" ] || [[ $said != *"$sentence"* ]]; then
        echo "retouch $*: expected $code and '$sentence', got $status and '$said'"
        failures=$((failures + 1))
    fi
}

: > "a photo ä.jpg"
mkdir folder
expect 2 "Usage:"
expect 2 "Usage:" ""
expect 2 "Unknown option: --fast" --fast "a photo ä.jpg"
expect 2 "-o needs a file name." "a photo ä.jpg" -o
expect 2 "-o needs a file name." "a photo ä.jpg" -o ""
expect 2 "There are several photos, but one file to write: out.png" "a photo ä.jpg" other.jpg -o out.png
expect 3 "There is no such file: other.jpg" "a photo ä.jpg" other.jpg
expect 3 "There is no such file: nö file.jpg" "nö file.jpg"
expect 3 "There is no such file: -x.jpg" -- -x.jpg
expect 3 "This is a folder, not a photo: folder" folder
if [ "$(id -u)" -ne 0 ]; then
    chmod 000 "a photo ä.jpg"
    expect 3 "This file may not be read: a photo ä.jpg" "a photo ä.jpg"
fi

# A checkout that was moved throws away what was built at its old place, and nothing else. What installs and
# builds is played: the build always fails.
checkout=$folder/checkout
mkdir -p "$checkout/scripts" "$checkout/build/i686" "$checkout/tools"
cp "$script" "$checkout/retouch"
printf '#!/bin/sh\nexit 0\n' >"$checkout/scripts/install-packages"
printf 'retouch_desktop_size=none\nstart_virtual_display() { :; }\nprepare_wine_prefix() { :; }\nstop_wine() { :; }\nstop_virtual_display() { :; }\n' \
    >"$checkout/scripts/wine-environment"
printf '#!/bin/sh\necho "played: $*"\nexit 1\n' >"$checkout/tools/cmake"
chmod +x "$checkout/scripts/install-packages" "$checkout/tools/cmake"
home=$(readlink -f "$checkout")
build_in_checkout() {   # build_in_checkout HOME: with what was configured for a checkout at HOME
    echo "CMAKE_HOME_DIRECTORY:INTERNAL=$1" >"$checkout/build/i686/CMakeCache.txt"
    : >"$checkout/build/i686/built"
    said=$(env -u DISPLAY PATH="$checkout/tools:$PATH" "$checkout/retouch" "a photo ä.jpg" 2>&1)
    [ "$?" -eq 6 ] && [[ $said == *"played: --preset i686"*"The build failed."* ]] ||
        { echo "a build for $1 was to fail, and said: $said"; failures=$((failures + 1)); }
}
chmod 644 "a photo ä.jpg"
build_in_checkout "$home"
[ -e "$checkout/build/i686/built" ] || { echo "the build of this checkout is gone"; failures=$((failures + 1)); }
build_in_checkout "$home-before"
[ ! -e "$checkout/build/i686/built" ] || { echo "the build of another place is still there"; failures=$((failures + 1)); }

# What does not fit into the 32-bit build's memory goes to the other one, and nothing else does. The programs are played.
printf '#!/bin/sh\nexit 0\n' | tee "$checkout/tools/cmake" >"$checkout/tools/xdpyinfo"
chmod +x "$checkout/tools/xdpyinfo"
run_with_code() {   # run_with_code CODE: what is said where the 32-bit build ends with it, and at last the code
    printf '#!/bin/sh\necho "runs $1"\ncase $1 in */i686/*) exit %s ;; esac\n' "$1" >"$checkout/scripts/run-windows"
    chmod +x "$checkout/scripts/run-windows"
    DISPLAY=:played PATH="$checkout/tools:$PATH" "$checkout/retouch" "a photo ä.jpg" 2>&1
    echo "ends with $?"
}
if [ "$(uname -m)" = x86_64 ]; then
    said=$(run_with_code 5)
    [[ $said == *"runs $home/build/i686/bin/retouch.exe"*"runs $home/build/x86_64/bin/retouch.exe"*"ends with 0" ]] ||
        { echo "a photo too large for 32 bits: $said"; failures=$((failures + 1)); }
fi
said=$(run_with_code 4)
[[ $said == *"runs $home/build/i686/bin/retouch.exe"*"ends with 4" && $said != */x86_64/* ]] ||
    { echo "a damaged photo: $said"; failures=$((failures + 1)); }

# Packages: where they do not fit to what is installed nothing becomes older unasked, and opening a photo wants no more
# than that needs. The system's own tools are played; nothing is installed.
system=$folder/system
mkdir "$system"
printf '#!/bin/sh\necho i386\n' >"$system/dpkg"
printf '#!/bin/sh\nexit 1\n' >"$system/dpkg-query"
printf '#!/bin/sh\nexec "$@"\n' >"$system/sudo"
printf '#!/bin/sh\necho "$@" >>"%s/asked"\n[ "$2" != install ]\n' "$folder" >"$system/apt-get"
chmod +x "$system"/*
install_played() {   # install_played [open]: the lines that apt-get is called with
    rm -f "$folder/asked"
    env -u CI DISPLAY=:played PATH="$system:$PATH" "$(dirname "$script")/scripts/install-packages" "$@" </dev/null >/dev/null 2>&1
    cat "$folder/asked"
}
all=$(install_played)
few=$(install_played open)
grep -q -- "-q install -y .*fp-compiler" <<<"$all" || { echo "not all packages are asked for: $all"; failures=$((failures + 1)); }
for tool in fp-compiler clang-format python3-pil libtiff-tools locales xvfb; do
    ! grep -q "$tool" <<<"$few" || { echo "opening a photo wants $tool"; failures=$((failures + 1)); }
done
for line in "$all" "$few"; do
    grep -q -- "install -s .*--allow-downgrades" <<<"$line" || { echo "not looked what would become older: $line"; failures=$((failures + 1)); }
    ! grep -- "--allow-downgrades" <<<"$line" | grep -qv -- "install -s" || { echo "made older unasked: $line"; failures=$((failures + 1)); }
done

"$script" --help | grep -q "^Usage:" || { echo "retouch --help tells no usage"; failures=$((failures + 1)); }
[ "$failures" -eq 0 ]
