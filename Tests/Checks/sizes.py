#!/usr/bin/env python3
"""No source file is longer than 500 lines."""
import tree

LONGEST = 500


def check(root):
    for name in filter(tree.is_source, tree.files(root)):
        count = len(tree.lines(root, name))
        if count > LONGEST:
            yield name, LONGEST + 1, f"{count} lines, at most {LONGEST} are allowed"


if __name__ == "__main__":
    tree.run(check)
