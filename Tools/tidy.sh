#!/usr/bin/env bash
# Reads each source file of ours with clang as second compiler, and runs clang-tidy over it, in one pass: what clang++ warns
# of are findings, too. Nothing is precompiled here, so that each file must include what it uses.
#   Tools/tidy.sh [REGEX]     REGEX: only the files whose path matches, for example Src/Module
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build=build/tidy
jobs=$(nproc)
cmake --preset tidy
# What moc, uic and rcc make is included by what is read.
mapfile -t generated < <(ninja -C "$build" -t targets all | sed -n 's/^\([A-Za-z]*_autogen\): phony$/\1/p')
cmake --build --preset tidy --target "${generated[@]}"
echo "generated ${#generated[@]} targets' sources ($SECONDS s)"

# The commands themselves, one a file, are noise.
run-clang-tidy -quiet -j "$jobs" -p "$build" "^$PWD/(Src|Host|Tests|Bench)/.*${1:-}" 2>/dev/null |
    sed -e '/^clang-tidy/d' -e '/^$/d' -e 's/\x1b\[[0-9;]*m//g'
echo "clang and clang-tidy found nothing ($SECONDS s)"
