#!/usr/bin/env bash
# Builds everything with clang++ as second compiler, then runs clang-tidy over each source file of ours.
#   Tools/tidy.sh [REGEX]     REGEX: only the files whose path matches, for example Src/Module
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build=build/tidy
jobs=$(nproc)
cmake --preset tidy
cmake --build --preset tidy
echo "clang++ built everything without a warning ($SECONDS s)"

# The commands themselves, one a file, are noise.
run-clang-tidy -quiet -j "$jobs" -p "$build" "^$PWD/(Src|Host|Tests|Bench)/.*${1:-}" 2>/dev/null |
    sed -e '/^clang-tidy/d' -e '/^$/d' -e 's/\x1b\[[0-9;]*m//g'
echo "clang-tidy found nothing ($SECONDS s)"
