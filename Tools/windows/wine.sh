#!/usr/bin/env bash
# Runs a Windows program under Wine, in the Wine folder and on the display of Tools/windows/desktop.sh.
#   Tools/windows/wine.sh WINE_FOLDER PROGRAM [ARGUMENT...]
#   Tools/windows/wine.sh WINE_FOLDER --test PROGRAM [ARGUMENT...]
#       a Qt test, whose output is shown here: it writes none to a pipe
# The folder of its temporary files, as Windows names it, may stand in KX_TEMP.
set -euo pipefail

folder=$1
shift
export WINEPREFIX=$folder/prefix WINEDEBUG=${WINEDEBUG:--all}
export KX_TEMP=${KX_TEMP:-'C:\windows\temp'}
[[ -r $folder/display ]] || {
    echo "wine.sh: no display: run Tools/windows/desktop.sh up $folder" >&2
    exit 1
}
DISPLAY=:$(<"$folder/display")
export DISPLAY
wine=/usr/lib/wine/wine64

if [[ $1 != --test ]]; then
    exec "$wine" "$@"
fi
# Wine's services may outlive the program, and would keep a pipe of ours open.
shift
output=$(mktemp -d "$folder/test.XXXXXX")
trap 'rm -rf "$output"' EXIT
status=0
"$wine" "$@" -o "Z:$output/report,txt" >"$output/said" 2>&1 </dev/null || status=$?
cat "$output/said"
tr -d '\r' <"$output/report"
# Without totals it ended before its end, whatever it says.
grep -q '^Totals:' "$output/report" || status=1
exit "$status"
