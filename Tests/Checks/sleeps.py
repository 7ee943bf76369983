#!/usr/bin/env python3
"""No test waits for time to pass; it waits for an event."""
import re

import tree

SLEEP = re.compile(r"\b(qWait|qSleep|sleep_for|sleep_until|(QThread::)?[mu]?sleep|nanosleep)\s*\(|\bSleep\s*\(|"
                   r"\btime\.sleep\b")
SHELL_SLEEP = re.compile(r"(^|[;&|(]|\bdo|\bthen)\s*sleep\s")


def check(root):
    for name in tree.files(root):
        if name.parts[0] != "Tests" or name.parts[:2] == ("Tests", "Checks"):
            continue
        pattern = SHELL_SLEEP if name.suffix == ".sh" else SLEEP
        for number, line in tree.lines(root, name):
            if pattern.search(line):
                yield name, number, "bare sleep: wait for the event instead"


if __name__ == "__main__":
    tree.run(check)
