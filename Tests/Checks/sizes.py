#!/usr/bin/env python3
"""No source file is longer than 500 lines; no function of what is shipped has more than 25 lines between its braces."""
import tree

LONGEST_FILE = 500
LONGEST_FUNCTION = 25
SHIPPED = {"Bench", "Host", "Sdk", "Src"}  # the functions of tests hold tables, too


def functions(lines):
    """Line of the opening brace and count of lines, of each function outside a class: the formatter puts its braces
    into the first column, like those of a class, whose closing one has a semicolon."""
    opened = None
    for number, line in lines:
        if line == "{":
            opened = number
        elif line == "}" and opened:
            yield opened, number - opened - 1
        if line.startswith("}"):
            opened = None


def check(root):
    for name in filter(tree.is_source, tree.files(root)):
        lines = tree.lines(root, name)
        if len(lines) > LONGEST_FILE:
            yield name, LONGEST_FILE + 1, f"{len(lines)} lines, at most {LONGEST_FILE} are allowed"
        if name.parts[0] not in SHIPPED:
            continue
        for number, count in functions(lines):
            if count > LONGEST_FUNCTION:
                yield name, number, f"a function of {count} lines, at most {LONGEST_FUNCTION} are allowed"


if __name__ == "__main__":
    tree.run(check)
