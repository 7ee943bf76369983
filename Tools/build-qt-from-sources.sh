#!/usr/bin/env bash
# Builds Qt 5.15 (base with SQLite, svg) from Debian 12's source packages.
#   Tools/build-qt-from-sources.sh WORK PREFIX OPTION...     OPTION: what Qt's configure is told besides
set -euo pipefail

# shellcheck source=Tools/sources.sh
source "$(dirname "${BASH_SOURCE[0]}")/sources.sh"
mkdir -p "$1" "$2"
work=$(cd "$1" && pwd)
prefix=$(cd "$2" && pwd)
shift 2
jobs=$(nproc)

cd "$work"
rm -rf build-qtbase build-qtsvg
fetch_sources qtbase-opensource-src qtsvg-opensource-src sqlite3

# Qt's driver compiles SQLite's one-file form in, which Debian's sources of Qt leave out.
driver=qtbase-opensource-src/src/3rdparty/sqlite
mkdir -p sqlite3/build "$driver" build-qtbase build-qtsvg
(cd sqlite3/build && ../configure && make sqlite3.c)
cp sqlite3/build/sqlite3.c sqlite3/build/sqlite3.h "$driver/"
# Import libraries are lower case where file names tell cases apart.
sed -i 's/-lSecur32/-lsecur32/; s/-lCrypt32/-lcrypt32/' qtbase-opensource-src/src/network/ssl/ssl.pri

cd "$work/build-qtbase"
../qtbase-opensource-src/configure -prefix "$prefix" -opensource -confirm-license -release -shared \
    -nomake examples -nomake tests -nomake tools -no-opengl -no-dbus -no-icu -qt-zlib -qt-libpng -qt-libjpeg \
    -qt-pcre -qt-harfbuzz -no-openssl -sql-sqlite -no-sql-odbc -no-pch \
    -no-feature-vulkan -no-feature-concurrent -no-feature-printer -no-feature-bearermanagement "$@"
make -j"$jobs"
make install

cd "$work/build-qtsvg"
"$prefix/bin/qmake" ../qtsvg-opensource-src
make -j"$jobs"
make install
