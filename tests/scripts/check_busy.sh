#!/usr/bin/env bash
# check_busy.sh BUSY: what scripts/busy starts and ends, and the exit codes that it passes on.
set -uo pipefail
busy=$1
failures=0
expect_code() {   # expect_code DESCRIPTION CODE COMMAND...
    local description=$1 code=$2 given
    shift 2
    "$@" >/dev/null 2>&1
    given=$?
    [ "$given" -eq "$code" ] || { echo "Wrong: $description: $given for $code"; failures=$((failures + 1)); }
}

expect_code "a command's code" 7 "$busy" sh -c 'exit 7'
expect_code "a command that a signal ends" 143 "$busy" sh -c 'kill -TERM $$'
expect_code "a program that is not there" 127 "$busy" /no/such/program
expect_code "no command" 2 "$busy"
expect_code "a share that leaves nothing" 2 "$busy" --share 100 true
expect_code "arguments of the command's own" 0 "$busy" --seed 3 sh -c '[ "$1" = --seed ]' sh --seed

# One for each processor, while the command runs and no longer.
children=$("$busy" sh -c 'grep -l "^PPid:[[:space:]]*$PPID\$" /proc/[0-9]*/status | tr -dc "0-9\n"; echo $$')
own=${children##*$'\n'}
bursts=$(grep -vx "$own" <<<"$children")
expect_code "one process for each processor" 0 test "$(wc -l <<<"$bursts")" -eq "$(nproc)"
for process in $bursts; do
    expect_code "process $process when the command has ended" 1 test -e "/proc/$process"
done
[ "$failures" -eq 0 ]
