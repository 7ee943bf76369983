# shellcheck shell=bash
# To be sourced: fetch_sources PACKAGE... unpacks Debian source packages into the current folder, each into a folder of its
# name. apt knows the places of the binary packages; those of the source packages are the same ones.

enable_sources() {
    local lists=/etc/apt/sources.list.d as_root=()
    ((EUID == 0)) || as_root=(sudo)
    if [[ -r $lists/debian.sources ]]; then
        sed 's/^Types:.*/Types: deb-src/' "$lists/debian.sources" |
            "${as_root[@]}" tee "$lists/kx-sources.sources" >/dev/null
    else
        sed -n 's/^deb /deb-src /p' /etc/apt/sources.list |
            "${as_root[@]}" tee "$lists/kx-sources.list" >/dev/null
    fi
    "${as_root[@]}" apt-get update
}

fetch_sources() {
    local package
    for package in "$@"; do
        [[ -n $(apt-cache showsrc "$package" 2>/dev/null) ]] || enable_sources
        rm -rf "$package" "$package"_*
        apt-get source --download-only "$package"
        dpkg-source --no-check -x "$package"_*.dsc "$package"
    done
}
