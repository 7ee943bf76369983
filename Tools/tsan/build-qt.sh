#!/usr/bin/env bash
# Provides Qt instrumented by ThreadSanitizer (Debian's is not, so its locks would go unseen): prints its folder on
# stdout, and on stderr how it came by it. Does nothing when it is there already.
#   Tools/tsan/build-qt.sh [FOLDER]     FOLDER: where it goes, by default build/qt-tsan
# It comes from the archive that KX_TSAN_QT_ARCHIVE names, or from ../shared/tsan/prefix.tar.xz beside this tree, or
# else is built from Debian's source packages, which takes about half an hour on two cores.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
archive=${KX_TSAN_QT_ARCHIVE:-$root/../shared/tsan/prefix.tar.xz}
config=lib/cmake/Qt5Test/Qt5TestConfig.cmake
mkdir -p "${1:-$root/build/qt-tsan}"
parent=$(cd "${1:-$root/build/qt-tsan}" && pwd)
stamp=$parent/prefix # names the folder of a whole installation; written last

say() { echo "build-qt: $*" >&2; }
fail() {
    say "$*"
    exit 1
}

unpack() {
    local wanted actual found
    [[ -r $archive.sha256 ]] || fail "no checksum beside the archive: $archive.sha256"
    wanted=$(cut -d' ' -f1 "$archive.sha256")
    actual=$(sha256sum "$archive" | cut -d' ' -f1)
    [[ $wanted == "$actual" ]] || fail "$archive has SHA-256 $actual, not $wanted"
    "$root/Tools/setup.sh" unpack >&2
    say "unpacking $archive"
    tar -xJf "$archive" -C "$parent" || fail "cannot unpack $archive"
    found=$(find "$parent" -path "*/$config" -print -quit)
    [[ -n $found ]] || fail "$archive holds no Qt: $config is missing"
    echo "${found%/"$config"}" >"$stamp"
}

build() {
    say "no archive at $archive: building from Debian's source packages; log in $parent/build.log"
    "$here/build-from-sources.sh" "$parent/work" "$parent/kx-qt-tsan" >"$parent/build.log" 2>&1 ||
        fail "the build failed: $(tail -n 3 "$parent/build.log")"
    rm -rf "$parent/work"
    echo "$parent/kx-qt-tsan" >"$stamp"
}

if ! [[ -r $stamp && -r $(<"$stamp")/$config ]]; then
    if [[ -r $archive ]]; then
        unpack
    elif [[ -n ${KX_TSAN_QT_ARCHIVE:-} ]]; then
        fail "KX_TSAN_QT_ARCHIVE names no readable file: $archive"
    else
        build
    fi
    say "instrumented Qt in $(<"$stamp")"
fi
cat "$stamp"
