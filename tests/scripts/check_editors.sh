#!/usr/bin/env bash
# check_editors.sh ROOT PROGRAMS: two editors side by side, file names that Windows cannot say, and the demo,
# through the script `retouch` on displays of their own. PROGRAMS: the folder of retouch_demo.exe.
set -uo pipefail
root=$1
programs=$2
folder=$(mktemp -d)
unset DISPLAY RETOUCH_WINE_READY
export RETOUCH_PREFIX=$root/build/wine-check   # not the one in which somebody may be at work
export WINEPREFIX=$RETOUCH_PREFIX
. "$root/scripts/wine-environment"
exec 7>"$root/build/wine-check.lock"   # shared with the other scripts that check, one at a time
flock 7
clean_up() {
    stop_wine
    stop_virtual_display
    rm -rf "$folder"
}
trap clean_up EXIT
trap 'exit 130' INT TERM
export RETOUCH_RESCUE_FOLDER="Z:${folder//\//\\}"
failures=0
expect() {   # expect DESCRIPTION COMMAND...
    local description=$1
    shift
    "$@" || { echo "Wrong: $description"; failures=$((failures + 1)); }
}
drive() { RETOUCH_WINE_READY=1 "$root/scripts/run-windows" "$programs/retouch_demo.exe" "$@"; }

stop_wine   # what an interrupted check may have left
# The demo first, since it wants no display.
cp "$root/samples/seeding.jpg" "$folder/demo.jpg"
cp "$folder/demo.jpg" "$folder/as-it-was.jpg"
mkdir -p "$root/build/demo"
echo mine >"$root/build/demo/a-file-of-the-user.txt"
(cd "$folder" && "$root/retouch" demo.jpg --overwrite >demo.log 2>&1)
expect "the demo ends well" test "$?" -eq 0
expect "the demo leaves the photo alone" cmp -s "$folder/demo.jpg" "$folder/as-it-was.jpg"
expect "the demo's result is in build/demo" grep -q "^$root/build/demo/05-saved.*\.jpg$" "$folder/demo.log"
expect "the demo removes nothing of the user's" test -f "$root/build/demo/a-file-of-the-user.txt"
rm -f "$root/build/demo/a-file-of-the-user.txt"
[ "$failures" -eq 0 ] || cat "$folder/demo.log"

start_virtual_display || exit 1
start_editor() {   # start_editor NAME ARGUMENT...: in the background; its exit code goes to NAME.code
    local name=$1
    shift
    ("$root/retouch" "$@" >"$folder/$name.log" 2>&1; echo "$?" >"$folder/$name.code") &
}
ended() {   # ended NAME: waits for its end and prints the exit code
    local waited=0
    until [ -s "$folder/$1.code" ]; do
        sleep 0.1
        waited=$((waited + 1))
        [ "$waited" -lt 900 ] || { echo "none: $(cat "$folder/$1.log")"; return; }
    done
    cat "$folder/$1.code"
}

cp "$folder/demo.jpg" "$folder/one.jpg"
cp "$folder/demo.jpg" "$folder/two.jpg"
start_editor one "$folder/one.jpg"
expect "the first editor opens" drive wait one.jpg
start_editor two "$folder/two.jpg"
expect "the second editor opens" drive wait two.jpg
expect "the second editor closes" drive close two.jpg
expect "closing is told by the exit code" test "$(ended two)" = 1
expect "the first editor is still there" drive close one.jpg
expect "it ends as its user wants" test "$(ended one)" = 1

cp "$folder/demo.jpg" "$folder/private.jpg"
chmod 600 "$folder/private.jpg"
ln -s private.jpg "$folder/shown.jpg"
start_editor private "$folder/shown.jpg" --overwrite
expect "a private photo is edited" drive spot private.jpg
expect "a private photo is saved" test "$(ended private)" = 0
expect "a link to it stays one" test -L "$folder/shown.jpg"
expect "and is followed" sh -c "! cmp -s '$folder/demo.jpg' '$folder/private.jpg'"
expect "a private photo keeps its mode" test "$(stat -c %a "$folder/private.jpg")" = 600

odd=$'odd "q"?\nb\\s.jpg'   # and a dot at its end, where it is still a JPEG photo
mkdir "$folder/dot."
cp "$folder/demo.jpg" "$folder/dot./$odd."
start_editor odd "$folder/dot./$odd."
expect "a photo with an odd name opens" drive save photo.jpg
expect "a photo with an odd name is saved" test "$(ended odd)" = 0
expect "that is said once" test "$(grep -c "^Saved: " "$folder/odd.log")" = 1
expect "by the name that it has" grep -qF "Opening $folder/dot./odd " "$folder/odd.log"
expect "its result has the name that belongs to it" test -s "$folder/dot./${odd%.jpg}-retouched.jpg"
[ "$failures" -eq 0 ] || tail -n 5 "$folder"/*.log
[ "$failures" -eq 0 ]
