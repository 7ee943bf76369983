#!/usr/bin/env bash
# Makes the package of a Windows build and tries it: unpacked into an empty folder it has every DLL that it needs, and its
# client downloads the embedded site's recordings under Wine.
#   Tools/windows/check-package.sh BUILD_FOLDER
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$(cd "$1" && pwd)
place=$build/unpacked
wine=$build/wine

rm -rf "$place" "$build"/*.zip
(cd "$build" && cpack)
mkdir "$place"
python3 -m zipfile -e "$build"/*.zip "$place"
folder=$(echo "$place"/*)
python3 -B "$here/../../Tests/Checks/closure.py" "$folder" "$here/../../Tests/Checks/system-windows.txt"
[[ -n $(ls "$folder/licences") ]]

"$here/desktop.sh" up "$wine"
trap '"$here/desktop.sh" down "$wine"' EXIT
timeout 300 "$here/wine.sh" "$wine" "$folder/kxclient.exe" download --out "Z:$place/downloads" </dev/null
