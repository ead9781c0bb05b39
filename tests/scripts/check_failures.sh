#!/usr/bin/env bash
# check_failures.sh ROOT PROGRAMS: retouch.exe while a save fails, is cut off, or the whole program is; and what
# becomes of the rights and names of a file. PROGRAMS: the folder of retouch.exe and retouch_demo.exe.
set -uo pipefail
root=$1
programs=$2
folder=$(mktemp -d)
unset DISPLAY RETOUCH_WINE_READY
export WINEPREFIX=$root/build/wine-check
. "$root/scripts/wine-environment"
exec 7>"$root/build/wine-check.lock"   # shared with the other scripts that check, one at a time
flock 7
mounted=
clean_up() {
    stop_wine
    stop_virtual_display
    [ -z "$mounted" ] || umount "$mounted"
    rm -rf "$folder"
}
trap clean_up EXIT
trap 'exit 130' INT TERM
mkdir -p "$folder/data"
rescue=$folder/data/Retouch
export RETOUCH_RESCUE_FOLDER="Z:${folder//\//\\}\\data"
failures=0
expect() {   # expect DESCRIPTION COMMAND...
    local description=$1
    shift
    "$@" || { echo "Wrong: $description"; failures=$((failures + 1)); }
}
until_true() {   # until_true COMMAND...: at most 60 seconds
    local end=$((SECONDS + 60))
    until "$@"; do
        [ "$SECONDS" -lt "$end" ] || return 1
        sleep 0.1
    done
}
stop_wine   # what an interrupted check may have left
start_virtual_display && prepare_wine_prefix "$retouch_desktop_size" || exit 1
export RETOUCH_WINE_READY=1
windows_path() { printf 'Z:%s' "${1//\//\\}"; }
start_host() {   # start_host PHOTO ARGUMENT...: in the background; what it says goes to `said`
    local photo=$1
    shift
    timeout 150 "$root/scripts/run-windows" "$programs/retouch.exe" "$(windows_path "$photo")" "$@" >"$folder/said" 2>&1 7>&- &
    host=$!
}
drive() { timeout 100 "$root/scripts/run-windows" "$programs/retouch_demo.exe" "$@" 7>&-; }
expect_end() {   # expect_end DESCRIPTION CODE: waits for the host's end
    local code
    wait "$host"
    code=$?
    [ "$code" -eq "$2" ] || { echo "Wrong: $1: code $code"; cat "$folder/said"; failures=$((failures + 1)); }
}
host_processes() {   # the Windows process itself among them
    local process
    for process in /proc/[0-9]*; do
        ! { tr '\0' ' ' <"$process/cmdline"; } 2>/dev/null | grep -q "retouch\.exe.*${folder##*/}" || echo "${process#/proc/}"
    done
}
kill_host() {   # as a crash would
    kill -KILL $(host_processes) 2>/dev/null
    wait "$host" 2>/dev/null
}
no_temporaries() { ! ls "$1"/retouch-*.tmp >/dev/null 2>&1; }

photo=$folder/photo.jpg
djpeg -scale 1/8 "$root/samples/seeding.jpg" | cjpeg -quality 90 >"$photo"   # small: what counts is not the size

# The name is taken while the session runs; and it is so long that nothing can be added to it.
letters() { printf "%$1s" | tr ' ' n; }
cp "$photo" "$folder/$(letters 247).jpg"
start_host "$folder/$(letters 247).jpg"
expect "the editor opens" drive wait "$(letters 247).jpg"
echo taken >"$folder/$(letters 241)-retouched.jpg"
expect "the session ends" drive spot "$(letters 247).jpg"
expect_end "another name was found" 0
expect "each step is told" test "$(grep -cE "^(Opening|Saving|Saved:) " "$folder/said")" = 4
expect "what has the name stays" grep -q taken "$folder/$(letters 241)-retouched.jpg"
expect "the result has another name" test -s "$folder/$(letters 239)-retouched-2.jpg"
expect "no temporary files" no_temporaries "$folder"

# The rights of a private photo, and its other names, links among them.
cp "$photo" "$folder/private.jpg"
chmod 600 "$folder/private.jpg"
start_host "$folder/private.jpg" --overwrite
expect "a private photo is edited" drive spot private.jpg
expect_end "a private photo is saved" 0
expect "a private photo stays private" test "$((0$(stat -c %a "$folder/private.jpg") & 7))" = 0
cp "$photo" "$folder/linked.jpg"
ln "$folder/linked.jpg" "$folder/other-name.jpg"
ln -s linked.jpg "$folder/link.jpg"
before=$(md5sum <"$folder/linked.jpg")
start_host "$folder/link.jpg" --overwrite
expect "a photo with two names is edited" drive spot linked.jpg
expect_end "a photo with two names is saved" 0
expect "a link to it is followed" test "$(md5sum <"$folder/linked.jpg")" != "$before"
expect "and stays a link" test -L "$folder/link.jpg"
expect "it still has two names" test "$folder/linked.jpg" -ef "$folder/other-name.jpg"

# The program is killed in a session: the next start offers what a minute before was there.
before=$(md5sum <"$photo")
export RETOUCH_RESCUE_SECONDS=1
start_host "$photo"
expect "the editor opens again" drive paint photo.jpg
expect "the picture is noted" until_true sh -c "ls '$rescue'/*.bmp >/dev/null 2>&1"
kill_host
unset RETOUCH_RESCUE_SECONDS
expect "the photo is as it was" test "$(md5sum <"$photo")" = "$before"
start_host "$photo" -o "$(windows_path "$folder/later.jpg")"
expect "the rescued work is offered" drive answer yes
expect "it can be gone on with" drive save photo.jpg
expect "the photo itself opens after it" drive close photo.jpg
expect_end "its end is told" 1
expect "the rescued work is saved" grep -q "^Saved: .*photo-retouched.jpg" "$folder/said"
expect "nothing is left of it" test -z "$(ls "$rescue" 2>/dev/null)"

# The folder of the result goes while the session runs, as a share does.
gone() {   # gone: the dialog for another place is cancelled, and the picture must be in a rescue file
    expect "the question for another place appears" drive answer cancel
    expect_end "that nothing could be saved is told" 7
    expect "the picture is in a rescue file" test -s "$(ls "$rescue"/rescued-*.bmp 2>/dev/null | head -n 1)"
    expect "and its place is said" grep -q "rescued-" "$folder/said"
    rm -f "$rescue"/rescued-*.bmp
}
mkdir "$folder/share"
start_host "$photo" -o "$(windows_path "$folder/share/out.png")"
expect "the editor opens for a share" drive wait photo.jpg
rmdir "$folder/share"
expect "the session over a lost share ends" drive spot photo.jpg
gone

# Not even a byte of memory is left when it comes to saving.
convert "$photo" "$folder/poor.png"
mkdir "$folder/poor"
start_host "$folder/poor.png" -o "$(windows_path "$folder/poor/out.png")"
expect "the editor opens before memory runs out" drive wait poor.png
for process in $(host_processes); do
    [[ $(readlink "/proc/$process/exe") != *wine* ]] || prlimit --pid "$process" --data=1
done
expect "the session without memory ends" drive save poor.png
expect_end "that it could not be saved is told" 7
expect "the picture is all there" test "$(convert "$(ls "$rescue"/rescued-*.bmp)" rgb:- | md5sum)" = "$(convert "$folder/poor.png" rgb:- | md5sum)"
expect "and its place is told" grep -q "rescued-" "$folder/said"
rm -f "$rescue"/rescued-*.bmp

# The program is killed in a save: the next start takes away what was half written.
cp "$root/samples/seeding.jpg" "$folder/large.jpg"   # long enough in the making as a PNG
before=$(md5sum <"$folder/large.jpg")
mkdir "$folder/half"
start_host "$folder/large.jpg" -o "$(windows_path "$folder/half/out.png")"
drive save large.jpg &
saving=$!
expect "a save begins" until_true sh -c "ls '$folder'/half/retouch-*.tmp >/dev/null 2>&1"
kill_host
wait "$saving"
expect "it was cut off" sh -c "ls '$folder'/half/retouch-*.tmp >/dev/null 2>&1"
expect "the large photo is as it was" test "$(md5sum <"$folder/large.jpg")" = "$before"
start_host "$photo"
expect "the next start opens" drive close photo.jpg
expect_end "its end without a save is told" 1
expect "nothing half written is left" test -z "$(find "$folder/half" "$folder/poor" -type f)"
expect "and nothing of its record" test -z "$(ls "$rescue")"

# What would go with --overwrite is told at once, and goes only when that is asked for.
convert "$photo" \( "$photo" -negate \) -compress JPEG "$folder/pages.tif"
before=$(md5sum <"$folder/pages.tif")
start_host "$folder/pages.tif" --overwrite
expect_end "further pages are not thrown away" 7
expect "they are named" grep -q "further pages" "$folder/said"
expect "the file with pages is as it was" test "$(md5sum <"$folder/pages.tif")" = "$before"
start_host "$folder/pages.tif" --overwrite --flatten
expect "with --flatten the editor opens" drive spot pages.tif
expect_end "with --flatten it is saved" 0
expect "what was not kept is said after it, too" test "$(grep -c "further pages" "$folder/said")" = 2
expect "one page is left" test "$(identify "$folder/pages.tif" | wc -l)" = 1

# A full disk: where a small one can be had, as root only.
small=$folder/small
mkdir "$small"
if mount -t tmpfs -o size=64k tmpfs "$small" 2>/dev/null; then
    mounted=$small
    echo old >"$small/out.png"
    start_host "$photo" -o "$(windows_path "$small/out.png")" --overwrite
    expect "the editor opens for a full disk" drive spot photo.jpg
    gone
    expect "nothing half is left there, and the old file" test "$(ls "$small"):$(cat "$small/out.png")" = out.png:old
fi
[ "$failures" -eq 0 ] || cat "$folder/said"
[ "$failures" -eq 0 ]
