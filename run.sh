#!/usr/bin/env bash
# Installs what is missing, builds, and downloads the embedded site's recordings through the plug-in, twice:
#   ./run.sh                  first the ordinary recordings, all of which must arrive whole; then the difficult ones:
#                             refused and recovered, encrypted, with covers of every kind. Some of those must fail: which
#                             is said before they start and once more below their table.
#   ./run.sh OPTION...        one run of "kxclient download" with these options (see kxclient download --help)
#   ./run.sh --gui [OPTION...]
#                             opens the window: choose recordings, download them, watch the plug-in's panel (see
#                             kxclient gui --help)
#   ./run.sh --screenshot FILE.png [OPTION...]
#                             writes a picture of the window in the middle of downloads; needs no display (see kxclient
#                             screenshot --help)
#   ./run.sh --windows [OPTION...]
#                             the downloads, with the Windows build under Wine
# The status is 0 when every recording ended as it must. The recordings go to build/demo/downloads and
# build/demo/difficult, which are emptied before, unless --out says otherwise. Two names of the ordinary list are taken
# there already: those files must stay as they are.
set -euo pipefail
caller=$PWD
cd "$(dirname "${BASH_SOURCE[0]}")"
root=$PWD
# shellcheck source=Tools/quiet.sh
source Tools/quiet.sh

preset=release
packages=(build)
case ${1:-} in
    --screenshot) packages+=(picture) ;;
    --windows)
        preset=windows
        Tools/windows/build-toolchain.sh >/dev/null
        shift
        ;;
esac
Tools/setup.sh "${packages[@]}"
demo=$root/build/demo
if [[ ! -e build/$preset/build.ninja ]]; then
    echo "building (a few minutes the first time; what the build says is in build/demo)"
    quiet "$demo/configure.log" cmake --preset "$preset"
fi
quiet "$demo/build.log" cmake --build --preset "$preset" --target kxclient KXRecordManage

client=("$root/build/$preset/bin/kxclient")
if [[ $preset == windows ]]; then
    wine=$root/build/windows/wine
    Tools/windows/desktop.sh up "$wine"
    trap '"$root/Tools/windows/desktop.sh" down "$wine"' EXIT
    client=("$root/Tools/windows/wine.sh" "$wine" "$root/build/windows/bin/kxclient.exe")
fi

case ${1:-} in
    --gui)
        cd "$caller"
        exec "${client[@]}" gui "${@:2}"
        ;;
    --screenshot)
        cd "$caller"
        QT_QPA_PLATFORM=xcb exec xvfb-run --auto-servernum --server-args="-screen 0 1600x1000x24" \
            "${client[@]}" screenshot --to "${@:2}"
        ;;
esac
for option in "$@"; do
    case $option in
        --out | --out=* | -out | -out=* | --help | -h)
            cd "$caller"
            "${client[@]}" download "$@"
            exit
            ;;
    esac
done

downloads=$demo/downloads
taken=("Doorbell 07-45.mp4" "Entrepôt – été.mp4")
rm -rf "$downloads"
mkdir -p "$downloads"
for name in "${taken[@]}"; do
    echo "an earlier recording" >"$downloads/$name"
done

status=0
(cd "$caller" && exec "${client[@]}" download --out "$downloads" "$@") || status=$?
for name in "${taken[@]}"; do
    if [[ $(cat "$downloads/$name") != "an earlier recording" ]]; then
        echo "run.sh: $name, which was there before, was overwritten" >&2
        status=1
    fi
done
# An interrupted or broken first run is the end.
if (($# > 0 || status > 1)); then
    exit "$status"
fi

echo
difficult=$demo/difficult
rm -rf "$difficult"
"${client[@]}" download --difficult --out "$difficult" || status=$?
exit "$status"
