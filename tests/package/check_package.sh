#!/usr/bin/env bash
# check_package.sh ROOT BUILD PRESET: makes the zip, unpacks it under a name with blanks and letters of several alphabets,
# checks its programs, builds a host against its CMake package, and runs that host and retouch.exe from there.
set -euo pipefail
root=$1 build=$2 preset=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "$1" >&2; exit 1; }

twice=()
[ "$preset" != i686 ] || twice=(--check)
"$root/scripts/package" "$preset" "${twice[@]}"
version=$(sed -n 's/^project(.*VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")
name=retouch-$version-$preset

# The letters of file names reach Windows programs through the locale.
export LC_ALL=C.UTF-8
folder="$work/Моя папка é 写真"
mkdir "$folder"
python3 -m zipfile -e "$root/build/packages/$name.zip" "$folder"
unpacked="$folder/$name"

python3 "$root/tests/binaries/check_binary.py" "$unpacked/KOVRTCH32.dll" --import KOVCTRL32.dll --export 2
python3 "$root/tests/binaries/check_binary.py" "$unpacked/KOVCTRL32.dll" --export 6 --export 56 --export 220 \
    --export 221 --export 242 --export 300 --export 301 --export 302
python3 "$root/tests/binaries/check_binary.py" "$unpacked/retouch.exe"
for program in retouch.exe KOVRTCH32.dll KOVCTRL32.dll; do
    "$preset-w64-mingw32-nm" "$unpacked/$program" 2>&1 | grep -q 'no symbols' || fail "$program still has its symbols"
done
# The version resource, as UTF-16; and what only the program has.
python3 - "$unpacked" "$version" <<'END'
import pathlib, sys
folder, version = pathlib.Path(sys.argv[1]), sys.argv[2]
for name in ("retouch.exe", "KOVRTCH32.dll", "KOVCTRL32.dll"):
    data = (folder / name).read_bytes()
    for text in ("OriginalFilename", name, "ProductVersion", version):
        assert text.encode("utf-16-le") in data, f"{name} does not say {text}"
data = (folder / "retouch.exe").read_bytes()
for text in (b"PerMonitorV2", b"Microsoft.Windows.Common-Controls", b"longPathAware"):
    assert text in data, f"retouch.exe's manifest lacks {text}"
END
# The licence of every library that is linked in, by the names under which their sources are fetched; zlib and the threads
# come with the compiler.
for library in $(sed -n '/^sources="/,/^"/s/^\([a-z][a-z0-9.-]*\) .*/\1/p' "$root/scripts/build-codecs") zlib winpthreads; do
    grep -qi 'copyright' "$unpacked/licences/$library.txt" || fail "the licence of $library is missing"
done
# The guide, with every picture that it shows.
grep -q '<h1>' "$unpacked/guide/guide.html" || fail "the guide is missing"
pictures=$(grep -o 'src="[^"]*"' "$unpacked/guide/guide.html" | cut -d '"' -f 2)
[ "$(wc -w <<<"$pictures")" -ge 11 ] || fail "the guide has too few pictures"
for picture in $pictures; do
    [ "$(head -c 4 "$unpacked/guide/$picture" | tail -c 3)" = PNG ] || fail "the guide's picture $picture is missing"
done
# The symbols fit the programs: the debugger's link names the file, and its checksum is right.
python3 -m zipfile -e "$root/build/packages/$name-symbols.zip" "$work/symbols"
python3 - "$unpacked" "$work/symbols/$name" <<'END'
import pathlib, sys, zlib
programs, symbols = map(pathlib.Path, sys.argv[1:])
for file in sorted(symbols.iterdir()):
    link = file.name.encode() + b"\0"
    link += bytes(-len(link) % 4) + zlib.crc32(file.read_bytes()).to_bytes(4, "little")
    assert link in (programs / file.stem).read_bytes(), f"{file.name} is not what {file.stem} links to"
END

cmake -G Ninja -S "$root/tests/package/consumer" -B "$work/consumer" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-$preset.cmake" -Dkovrtch32_DIR="$unpacked/sdk/lib/cmake/kovrtch32" \
    -DHOST_SOURCE="$unpacked/sdk/hosts/host.c" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
cmake --build "$work/consumer" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }

windows_path() { printf 'Z:%s' "${1//\//\\}"; }
RETOUCH_PACKAGE=$(windows_path "$unpacked") RETOUCH_CONSUMER=$(windows_path "$work/consumer") \
    "$root/scripts/run-windows" "$build/bin/worked_host_tests.exe" --gtest_also_run_disabled_tests \
    --gtest_filter='DISABLED_Package.*' --gtest_brief=1
