#!/usr/bin/env bash
# A volume of 64 MiB for tests of the free space, and one in its folder "read-only" on which nobody may write; where they
# may not be mounted, a file "reason" says why.
#   small-volume.sh up|down FOLDER [WINE_FOLDER]     WINE_FOLDER: also make it drive V: of that Wine folder
set -euo pipefail

folder=$2
mkdir -p "$folder"

is_mounted() { findmnt --mountpoint "$folder" >/dev/null; }

up() {
    local said
    down "$@"
    if said=$(mount -t tmpfs -o size=64m tmpfs "$folder" 2>&1); then
        mkdir "$folder/read-only"
        mount -t tmpfs -o ro,size=1m tmpfs "$folder/read-only"
    else
        echo "no volume may be mounted here: $said" >"$folder/reason"
    fi
    [[ -z ${1:-} ]] || ln -sfn "$folder" "$1/prefix/dosdevices/v:"
}

down() {
    ! is_mounted || umount --recursive "$folder"
    rm -f "$folder/reason"
    [[ -z ${1:-} ]] || rm -f "$1/prefix/dosdevices/v:"
}

"$1" "${3:-}"
