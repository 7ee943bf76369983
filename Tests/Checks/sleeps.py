#!/usr/bin/env python3
"""No test waits for time to pass, and none measures it: it waits for an event, and counts what was done."""
import re

import tree

SLEEP = re.compile(r"\b(qWait|qSleep|sleep_for|sleep_until|(QThread::)?[mu]?sleep|nanosleep)\s*\(|\bSleep\s*\(|"
                   r"\btime\.sleep\b")
STOPWATCH = re.compile(r"\b(QElapsedTimer|(steady|system|high_resolution)_clock::now|clock_gettime|GetTickCount|"
                       r"QueryPerformanceCounter|m?secsTo\s*\(|time\.(monotonic|perf_counter|process_time|time)\b)")
SHELL_STOPWATCH = re.compile(r"\bSECONDS\b")
SHELL_SLEEP = re.compile(r"(^|[;&|(]|\bdo|\bthen)\s*sleep\s")


def check(root):
    for name in tree.files(root):
        if name.parts[0] != "Tests" or name.parts[:2] == ("Tests", "Checks"):
            continue
        shell = name.suffix == ".sh"
        for number, line in tree.lines(root, name):
            if (SHELL_SLEEP if shell else SLEEP).search(line):
                yield name, number, "bare sleep: wait for the event instead"
            if (SHELL_STOPWATCH if shell else STOPWATCH).search(line):
                yield name, number, "elapsed time: assert what was done instead"


if __name__ == "__main__":
    tree.run(check)
