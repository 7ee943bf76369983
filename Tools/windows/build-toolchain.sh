#!/usr/bin/env bash
# Provides what a Windows build on Debian needs besides its packages: Qt and libcurl for 64-bit Windows, and the header-only
# libraries in a folder of their own (those of Debian lie among the headers of Linux). Prints the folder on stdout, and on
# stderr how it came by it. Does nothing when it is there already.
#   Tools/windows/build-toolchain.sh [FOLDER]     FOLDER: where it goes, by default build/windows-toolchain
# Qt and libcurl come from the archive that KX_WINDOWS_PREFIX_ARCHIVE names, or from ../shared/windows/prefix.tar.xz beside
# this tree, or else are built from Debian's source packages: Qt took an hour on two busy cores, libcurl 14 minutes. An
# archive without libcurl is completed from its source package.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=Tools/prefix.sh
source Tools/prefix.sh
# shellcheck source=Tools/sources.sh
source Tools/sources.sh

tool=build-toolchain
named=${KX_WINDOWS_PREFIX_ARCHIVE:-}
archive=${named:-$root/../shared/windows/prefix.tar.xz}
config=lib/cmake/Qt5Test/Qt5TestConfig.cmake
parent=${1:-$root/build/windows-toolchain}

# The tablet feature needs a header that Debian's sources leave out.
build() {
    Tools/build-qt-from-sources.sh "$parent/work" "$1" -xplatform win32-g++ \
        -device-option CROSS_COMPILE=x86_64-w64-mingw32- -qt-freetype -schannel -no-feature-tabletevent &&
        rm -rf "$parent/work"
}

# Only HTTP and HTTPS, with the certificates and the TLS of Windows.
libcurl() {
    local protocol library without=() work=$parent/work-libcurl
    for protocol in dict file ftp gopher imap ldap mqtt pop3 rtsp smb smtp telnet tftp; do
        without+=("--disable-$protocol")
    done
    for library in brotli zstd libpsl libidn2 nghttp2 libssh2 librtmp; do
        without+=("--without-$library")
    done
    rm -rf "$work" && mkdir -p "$work" && (
        cd "$work" && fetch_sources curl && mkdir build && cd build &&
            ../curl/configure --host=x86_64-w64-mingw32 CC=x86_64-w64-mingw32-gcc-posix --prefix="$1" \
                --enable-shared --disable-static --disable-manual --with-schannel \
                --with-zlib=/usr/x86_64-w64-mingw32 "${without[@]}" &&
            make -j"$(nproc)" -C lib && make -C lib install && make -C include install &&
            x86_64-w64-mingw32-strip --strip-unneeded "$1/bin/libcurl-4.dll" &&
            install -D -m 644 ../curl/debian/copyright "$1/share/doc/curl/copyright"
    ) && rm -rf "$work"
}

# Debian splits the HTTP library into a header and a library for Linux; its source package has it in one header.
headers() {
    local to=$1/include
    rm -rf "$to" "$1/sources"
    mkdir -p "$to" "$1/sources"
    cp -r /usr/include/nlohmann /usr/include/spdlog /usr/include/fmt "$to/"
    (cd "$1/sources" && fetch_sources cpp-httplib && cp cpp-httplib/httplib.h "$to/")
    rm -rf "$1/sources"
    touch "$1/complete"
}

# Qt's CMake files refuse to work when a plug-in that they describe was left out of the archive.
forget_missing_plugins() {
    local description plugin
    for description in "$1"/lib/cmake/*/Qt5*Plugin.cmake; do
        plugin=$(sed -n 's/.*RELEASE "\(.*\)" .*/\1/p' "$description")
        [[ -e $1/plugins/$plugin ]] || rm "$description"
    done
}

Tools/setup.sh build windows >&2
provide
prefix=$(<"$stamp")
if ! [[ -e $prefix/share/doc/curl/copyright && -e $prefix/lib/libcurl.dll.a ]]; then
    say "building libcurl from Debian's source package; log in $parent/libcurl.log"
    libcurl "$prefix" >"$parent/libcurl.log" 2>&1 || fail "no libcurl: $(tail -n 3 "$parent/libcurl.log")"
fi
if ! [[ -e $prefix/kx-headers/complete ]]; then
    forget_missing_plugins "$prefix"
    headers "$prefix/kx-headers" >"$parent/headers.log" 2>&1 ||
        fail "no header-only libraries: $(tail -n 3 "$parent/headers.log")"
fi
echo "$prefix"
