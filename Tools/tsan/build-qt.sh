#!/usr/bin/env bash
# Provides Qt instrumented by ThreadSanitizer (Debian's is not, so its locks would go unseen): prints its folder on
# stdout, and on stderr how it came by it. Does nothing when it is there already.
#   Tools/tsan/build-qt.sh [FOLDER]     FOLDER: where it goes, by default build/qt-tsan
# It comes from the archive that KX_TSAN_QT_ARCHIVE names, or from ../shared/tsan/prefix.tar.xz beside this tree, or
# else is built from Debian's source packages, which takes about half an hour on two cores.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=Tools/prefix.sh
source Tools/prefix.sh

tool=build-qt
named=${KX_TSAN_QT_ARCHIVE:-}
archive=${named:-$root/../shared/tsan/prefix.tar.xz}
config=lib/cmake/Qt5Test/Qt5TestConfig.cmake
parent=${1:-$root/build/qt-tsan}

build() {
    Tools/setup.sh build tsan && Tools/build-qt-from-sources.sh "$parent/work" "$1" -sanitize thread \
        -system-freetype -fontconfig -no-xcb -no-glib && rm -rf "$parent/work"
}

provide
prefix=$(<"$stamp")

# The system's moc writes the same as the instrumented one in a fifteenth of the time.
for program in moc uic rcc; do
    system=/usr/lib/qt5/bin/$program
    [[ -x $system && $("$system" -v) == "$("$prefix/bin/$program" -v)" ]] || continue
    ln -sf "$system" "$prefix/bin/$program"
done
echo "$prefix"
