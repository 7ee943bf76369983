#!/usr/bin/env python3
"""Counts the test functions in a JUnit file of ctest and shows what failed.

    Tools/count-tests.py FILE

A Qt test program counts by its own totals, any other entry as one. The last line is "N passed, N failed", with
", N skipped" when something was skipped. Exit status: 0 when something ran and nothing failed.
"""
import re
import sys
import xml.etree.ElementTree as ElementTree

TOTALS = re.compile(r"^Totals: (\d+) passed, (\d+) failed, (\d+) skipped, (\d+) blacklisted", re.MULTILINE)
SHOWN_LINES = 60


def count(status, output):
    """Gives (passed, failed, skipped) of one entry."""
    if status == "disabled" or (status == "notrun" and "SKIP_" in output):
        return 0, 0, 1
    totals = [[int(number) for number in found] for found in TOTALS.findall(output)]
    passed, failed, skipped, blacklisted = (sum(column) for column in zip(*totals)) if totals else (0, 0, 0, 0)
    if status == "run":
        return (passed, failed, skipped + blacklisted) if totals else (1, 0, 0)
    # It failed: by a function of its own, or as a whole (crash, time out, sanitizer, not built).
    return passed, failed or 1, skipped + blacklisted


def show(name, status, output):
    print(f"---- {name}: {status}")
    lines = output.rstrip().splitlines()
    failures = [line for line in lines[:-SHOWN_LINES] if line.startswith(("FAIL!", "QFATAL", "   Loc:"))]
    for line in failures + lines[-SHOWN_LINES:]:
        print(f"  {line}")


def main(arguments):
    if len(arguments) != 1:
        print(__doc__, file=sys.stderr)
        return 2
    sums = [0, 0, 0]
    for case in ElementTree.parse(arguments[0]).getroot().iter("testcase"):
        output = case.findtext("system-out", "")
        skipped = case.find("skipped")
        if skipped is not None:
            output += skipped.get("message", "")
        counts = count(case.get("status"), output)
        if counts[1]:
            show(case.get("name"), case.get("status"), output)
        sums = [total + number for total, number in zip(sums, counts)]
    passed, failed, skipped = sums
    print(f"{passed} passed, {failed} failed" + (f", {skipped} skipped" if skipped else ""))
    return 0 if passed and not failed else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
