#!/usr/bin/env python3
"""A built library exports, or imports from, what a list says and nothing else.

    exports.py LIBRARY LIST              demangled names of what it exports
    exports.py --imports LIBRARY LIST    names of the libraries that it needs
"""
import re
import subprocess
import sys


def output_of(*command, text=None):
    return subprocess.run(command, capture_output=True, check=True, text=True, input=text).stdout


def is_windows(library):
    with open(library, "rb") as file:
        return file.read(2) == b"MZ"


def exported(library):
    """Demangled names of the exported symbols, in no order; several symbols may share one name."""
    if not is_windows(library):
        listing = output_of("nm", "--dynamic", "--defined-only", "--demangle", library)
        return {line.split(" ", 2)[2] for line in listing.splitlines()}
    table = output_of("objdump", "-p", library).partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
    names = re.findall(r"^\s*\[ *\d+\] (?:\+base\[ *\d+\] +\w+ )?(\S+)$", table, re.MULTILINE)
    return set(output_of("c++filt", text="\n".join(names)).splitlines())


def imported(library):
    pattern = r"DLL Name: (\S+)" if is_windows(library) else r"NEEDED +(\S+)"
    return set(re.findall(pattern, output_of("objdump", "-p", library)))


def wanted(path):
    with open(path, encoding="utf-8") as text:
        return [(number, line.strip()) for number, line in enumerate(text, start=1)
                if line.strip() and not line.startswith("#")]


def findings(names, word, entries, path):
    for number, entry in entries:
        if entry not in names:
            yield f"{path}:{number}: not {word}: {entry}"
    last = entries[-1][0] if entries else 0
    for name in sorted(names - {entry for _, entry in entries}):
        yield f"{path}:{last}: {word}, but not listed: {name}"


def main(arguments):
    imports = arguments[0] == "--imports"
    library, path = arguments[1:] if imports else arguments
    names = imported(library) if imports else exported(library)
    found = list(findings(names, "imported" if imports else "exported", wanted(path), path))
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
