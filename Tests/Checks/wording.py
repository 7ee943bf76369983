#!/usr/bin/env python3
"""The tree speaks for itself: no notes to come back to, no other document, no machine it was written on."""
import re

import tree

# Brackets keep a pattern from finding itself.
RULES = [
    (re.compile(r"\b([T]ODO|[F]IXME|[X]XX)\b"), "note to come back to"),
    (re.compile(r"\bnot [i]mplemented\b|\b[p]laceholder\b", re.IGNORECASE), "unfinished work"),
    (re.compile(r"\b[s]pec(ification)?s?\b", re.IGNORECASE), "another document: give the reason itself"),
    (re.compile(r"\b[P]arts? \d+\.\d+\b|\b[i]ssue #?\d+\b", re.IGNORECASE), "another document: give the reason itself"),
    (re.compile(r"(?<![\w.$}/*-])/([w]ork|[r]oot)/"), "path of one machine"),
    (re.compile(r"https?://(?![\w.-]*\b(example\.(com|org|net)|w3\.org)\b)([\w-]+\.)+(com|org|net|io|cn|dev)\b"),
     "host outside this machine"),
]


def check(root):
    for name in tree.files(root):
        for number, line in [(0, name.as_posix())] + tree.lines(root, name):
            for pattern, reason in RULES:
                found = pattern.search(line)
                if found:
                    yield name, number, f"\"{found.group(0).strip()}\": {reason}"


if __name__ == "__main__":
    tree.run(check)
