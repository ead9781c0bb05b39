#!/usr/bin/env bash
# check_retouch.sh SCRIPT: what the script says, and how it ends, when it is called wrongly.
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

"$script" --help | grep -q "^Usage:" || { echo "retouch --help tells no usage"; failures=$((failures + 1)); }
[ "$failures" -eq 0 ]
