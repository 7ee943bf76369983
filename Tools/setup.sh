#!/usr/bin/env bash
# Installs the Debian 12 packages that this tree needs; says nothing when all are there.
#   Tools/setup.sh            to build, run and test
#   Tools/setup.sh GROUP...   one or more of: build, checks (second compiler, static checks), bench, unpack (an archive),
#                             picture (a display without a screen, fonts), tsan (Qt from its source packages),
#                             windows (cross compiler, Wine, a display)
set -euo pipefail

build=(
    g++ cmake ninja-build ccache pkg-config
    qtbase5-dev qtbase5-private-dev libqt5svg5-dev libqt5sql5-sqlite qttools5-dev-tools
    libgcrypt20-dev libcurl4-openssl-dev libspdlog-dev libbenchmark-dev nlohmann-json3-dev libcpp-httplib-dev
    ffmpeg openssl python3 git fonts-dejavu-core fonts-noto-core
)
checks=(clang clang-tidy clang-format shellcheck)
bench=(curl)
unpack=(xz-utils dpkg-dev)
picture=(xvfb xauth fonts-wqy-microhei)
tsan=(dpkg-dev make perl tcl libfontconfig-dev libfreetype-dev zlib1g-dev)
windows=(
    g++-mingw-w64-x86-64-posix libgcrypt-mingw-w64-dev libgpg-error-mingw-w64-dev libz-mingw-w64-dev
    wine64 xvfb xauth libfmt-dev dpkg-dev make tcl
)

wanted=()
for group in "${@:-build}"; do
    case $group in
        build) wanted+=("${build[@]}") ;;
        checks) wanted+=("${checks[@]}") ;;
        bench) wanted+=("${bench[@]}") ;;
        unpack) wanted+=("${unpack[@]}") ;;
        picture) wanted+=("${picture[@]}") ;;
        tsan) wanted+=("${tsan[@]}") ;;
        windows) wanted+=("${windows[@]}") ;;
        *)
            echo "Tools/setup.sh: no group \"$group\" (there are build, checks, bench, unpack, picture, tsan, windows)" >&2
            exit 2
            ;;
    esac
done

missing=()
for package in "${wanted[@]}"; do
    state=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
    [[ $state == installed ]] || missing+=("$package")
done
((${#missing[@]})) || exit 0

as_root=()
((EUID == 0)) || as_root=(sudo)
echo "installing ${missing[*]}${as_root[0]:+ (with sudo)}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
apt_get() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq "$@" </dev/null >>"$log" 2>&1
}
if ! { apt_get update && apt_get install -y --no-install-recommends "${missing[@]}"; }; then
    tail -n 20 "$log" >&2
    echo "Tools/setup.sh: could not install ${missing[*]}" >&2
    exit 1
fi
