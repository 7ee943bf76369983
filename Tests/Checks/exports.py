#!/usr/bin/env python3
"""The built plug-in exports what exports.txt lists and nothing else: exports.py LIBRARY LIST."""
import subprocess
import sys


def exported(library):
    """Demangled names of the defined dynamic symbols, in no order; several symbols may share one name."""
    listing = subprocess.run(["nm", "--dynamic", "--defined-only", "--demangle", library],
                             capture_output=True, check=True, text=True)
    return {line.split(" ", 2)[2] for line in listing.stdout.splitlines()}


def wanted(path):
    with open(path, encoding="utf-8") as text:
        return [(number, line.strip()) for number, line in enumerate(text, start=1)
                if line.strip() and not line.startswith("#")]


def findings(names, entries, path):
    for number, entry in entries:
        if entry not in names:
            yield f"{path}:{number}: not exported: {entry}"
    last = entries[-1][0] if entries else 0
    for name in sorted(names - {entry for _, entry in entries}):
        yield f"{path}:{last}: exported, but not listed: {name}"


def main(arguments):
    library, path = arguments
    found = list(findings(exported(library), wanted(path), path))
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
