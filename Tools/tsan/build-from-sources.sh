#!/usr/bin/env bash
# Builds Qt 5.15 (base with SQLite, svg) instrumented by ThreadSanitizer from Debian 12's source packages.
#   Tools/tsan/build-from-sources.sh WORK PREFIX
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
work=$1
prefix=$2
jobs=$(nproc)
as_root=()
((EUID == 0)) || as_root=(sudo)

# apt knows the places of the binary packages; those of the source packages are the same ones.
enable_sources() {
    local lists=/etc/apt/sources.list.d
    if [[ -r $lists/debian.sources ]]; then
        sed 's/^Types:.*/Types: deb-src/' "$lists/debian.sources" |
            "${as_root[@]}" tee "$lists/kx-qt.sources" >/dev/null
    else
        sed -n 's/^deb /deb-src /p' /etc/apt/sources.list |
            "${as_root[@]}" tee "$lists/kx-qt.list" >/dev/null
    fi
    "${as_root[@]}" apt-get update
}

"$root/Tools/setup.sh" build tsan
apt-cache showsrc qtbase-opensource-src 2>/dev/null | grep -q '^Package:' || enable_sources

mkdir -p "$work" "$prefix"
cd "$work"
rm -rf qtbase qtsvg sqlite build-qtbase build-qtsvg
apt-get source --download-only qtbase-opensource-src qtsvg-opensource-src sqlite3
dpkg-source -x qtbase-opensource-src_*.dsc qtbase
dpkg-source -x qtsvg-opensource-src_*.dsc qtsvg
dpkg-source -x sqlite3_*.dsc sqlite

# Qt's driver compiles SQLite's one-file form in, so that the database is instrumented too.
mkdir -p sqlite/build qtbase/src/3rdparty/sqlite build-qtbase build-qtsvg
(cd sqlite/build && ../configure && make sqlite3.c)
cp sqlite/build/sqlite3.c sqlite/build/sqlite3.h qtbase/src/3rdparty/sqlite/

cd "$work/build-qtbase"
../qtbase/configure -prefix "$prefix" -opensource -confirm-license -release -shared -sanitize thread \
    -nomake examples -nomake tests -nomake tools -no-opengl -no-dbus -no-icu -qt-zlib -qt-libpng -qt-libjpeg \
    -system-freetype -fontconfig -qt-pcre -qt-harfbuzz -no-openssl -sql-sqlite -no-sql-odbc -no-pch -no-xcb -no-glib \
    -no-feature-vulkan -no-feature-concurrent -no-feature-printer -no-feature-bearermanagement
make -j"$jobs"
make install

cd "$work/build-qtsvg"
"$prefix/bin/qmake" ../qtsvg
make -j"$jobs"
make install
