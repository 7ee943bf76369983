#!/usr/bin/env python3
"""A folder of Windows programs has every DLL they need, and none that nobody needs: closure.py FOLDER SYSTEM_LIST.

SYSTEM_LIST names the DLLs that every Windows has. A DLL in a folder below is a plug-in, which nobody imports.
"""
import pathlib
import sys

import exports


def findings(folder, system):
    beside = {path.name.lower(): path for path in folder.glob("*.dll")}
    needed = set()
    programs = sorted(path for path in folder.rglob("*") if path.suffix.lower() in (".exe", ".dll"))
    if not any(path.suffix.lower() == ".exe" for path in programs):
        yield f"{folder}: no program in it"
    for path in programs:
        for name in sorted(exports.imported(path)):
            needed.add(name.lower())
            if name.lower() not in beside and name.lower() not in system:
                yield f"{path.relative_to(folder)}: needs {name}, which is not there"
    plugin = "kxrecordmanage.dll"  # the client loads it by its name
    for name in sorted(beside.keys() - needed - {plugin}):
        yield f"{beside[name].name}: nobody needs it"


def main(arguments):
    folder, system_list = arguments
    system = {entry.lower() for _, entry in exports.wanted(system_list)}
    found = list(findings(pathlib.Path(folder), system))
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
