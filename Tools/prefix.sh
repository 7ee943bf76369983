# shellcheck shell=bash disable=SC2154
# To be sourced by a script that provides a folder of foreign libraries. It sets before: `tool` (its name in messages),
# `archive` (where an archive may lie, its SHA-256 in a file .sha256 beside it), `named` (whether the user named it),
# `config` (a file that a whole folder has) and `parent` (where the folder goes); and has a function `build` that makes
# "$1" from source packages, with its output in a log.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { echo "$tool: $*" >&2; }
fail() {
    say "$*"
    exit 1
}

unpack_archive() {
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

build_from_sources() {
    local start=$SECONDS
    say "no archive at $archive: building from Debian's source packages; log in $parent/build.log"
    build "$parent/built" >"$parent/build.log" 2>&1 || fail "the build failed: $(tail -n 3 "$parent/build.log")"
    say "built in $(((SECONDS - start + 30) / 60)) minutes"
    echo "$parent/built" >"$stamp"
}

# Leaves the folder's name in the file "$stamp", which is written last.
provide() {
    mkdir -p "$parent"
    parent=$(cd "$parent" && pwd)
    stamp=$parent/prefix
    [[ -r $stamp && -r $(<"$stamp")/$config ]] && return
    if [[ -r $archive ]]; then
        unpack_archive
    elif [[ -n $named ]]; then
        fail "the archive that was named is not readable: $archive"
    else
        build_from_sources
    fi
    say "ready in $(<"$stamp")"
}
