#!/usr/bin/env bash
# What Windows programs need to run here: a Wine folder that says it is Windows 10, and a display without a screen.
#   Tools/windows/desktop.sh up|down FOLDER
set -euo pipefail

wait_seconds=60
folder=$2
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
export WINEPREFIX=$folder/prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
export KX_TEMP='C:\windows\temp'
wine=/usr/lib/wine/wine64
server=/usr/lib/wine/wineserver64

# Ends the display that an earlier run left, by the process that it noted.
down() {
    [[ ! -d $WINEPREFIX ]] || "$server" -k || true
    if [[ -r $folder/display.pid ]] && grep -qs Xvfb "/proc/$(<"$folder/display.pid")/comm"; then
        kill "$(<"$folder/display.pid")"
    fi
    rm -rf "$folder"/display "$folder/display.pid" "$folder"/test.*
}

show() {
    local waited=0
    rm -f "$folder/display.new"
    setsid Xvfb -displayfd 1 -screen 0 1600x1200x24 -nolisten tcp -noreset \
        >"$folder/display.new" 2>"$folder/display.log" </dev/null &
    echo $! >"$folder/display.pid"
    until [[ -s $folder/display.new ]]; do
        if ((++waited > wait_seconds * 10)) || ! kill -0 $! 2>/dev/null; then
            cat "$folder/display.log" >&2
            echo "desktop.sh: no display" >&2
            exit 1
        fi
        sleep 0.1
    done
    mv "$folder/display.new" "$folder/display"
    DISPLAY=:$(<"$folder/display")
    export DISPLAY
}

set_value() { timeout 60 "$wine" reg add "$1" /v "$2" /d "$3" /t "${4:-REG_SZ}" /f; }

up() {
    down
    show
    {
        if ! [[ -e $folder/settled ]]; then
            mkdir -p "$WINEPREFIX"
            timeout 300 "$wine" wineboot --init
            # A desktop of its own: without a window manager around them windows would not become active.
            set_value 'HKCU\Software\Wine' Version win10
            set_value 'HKCU\Software\Wine\Explorer' Desktop kx
            set_value 'HKCU\Software\Wine\Explorer\Desktops' kx 1600x1200
            # Without the fonts of Windows, Wine takes any: a Noto font for another script, with lines twice as high.
            for font in Tahoma 'Segoe UI' 'MS Shell Dlg' 'MS Shell Dlg 2' 'MS Sans Serif'; do
                set_value 'HKCU\Software\Wine\Fonts\Replacements' "$font" 'DejaVu Sans'
            done
            # Wine takes no TEMP and TMP from outside; see wine.sh.
            set_value 'HKCU\Environment' TEMP '%KX_TEMP%' REG_EXPAND_SZ
            set_value 'HKCU\Environment' TMP '%KX_TEMP%' REG_EXPAND_SZ
            timeout 60 "$server" -w
            touch "$folder/settled"
        fi
        "$server" -p600
        # Wine's services end with the last program and start anew with the next, during which two programs get into each
        # other's way: the desktop itself is a program that stays.
        "$wine" explorer /desktop=kx,1600x1200 &
        timeout 60 "$wine" cmd /c exit
    } >"$folder/wine.log" 2>&1 </dev/null || {
        tail -n 20 "$folder/wine.log" >&2
        exit 1
    }
}

case $1 in
    up | down) "$1" ;;
    *)
        sed -n 2,3p "$0" >&2
        exit 2
        ;;
esac
