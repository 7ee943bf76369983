#!/usr/bin/env python3
"""Each include line runs along an arrow that the layout allows (Docs/Architecture.md lists them)."""
import pathlib
import posixpath
import re

import tree

INCLUDE = re.compile(r"^\s*#\s*include\s*([<\"])([^>\"]+)[>\"]")
LINK = re.compile(r"target_link_libraries\s*\(([^)]*)\)", re.DOTALL)
ROOTS = ("Sdk", "Src", ".", "Tests")
STANDARD = re.compile(r"^[a-z0-9_]+$")  # C++ headers have no suffix
GENERATED = re.compile(r"^(ui_\w+\.h|moc_\w+\.cpp|\w+\.moc)$")

QT_PLUGIN = {"QtCore", "QtGui", "QtWidgets"}
SOURCES = {"Sdk", "Src", "Host", "Tests", "Bench"}

# Room: the rooms it may include besides itself, and its Qt modules (None: any). The first room that holds a file counts.
ROOMS = [
    ("Src/Model", {"Sdk"}, QT_PLUGIN),
    ("Src/Module", {"Sdk", "Src/Model"}, QT_PLUGIN),
    ("Src/DownloadWidget", {"Sdk", "Src/Model", "Src/Module"}, QT_PLUGIN),
    ("Src/Plugin", {"Sdk", "Src/Model", "Src/Module", "Src/DownloadWidget"}, QT_PLUGIN),
    ("Src", set(), set()),
    ("Sdk", set(), QT_PLUGIN),
    ("Host/Client", {"Sdk", "Src/Model", "Host"}, None),
    ("Host", {"Sdk", "Src/Model"}, None),
    ("Tests/FakeHost", {"Sdk"}, None),
    ("Tests", SOURCES, None),
    ("Bench", SOURCES, None),
]

# Headers of the platform, each in its one file.
PLATFORM = {"Src/Module/DiskFreeSpace.cpp": {"windows.h", "sys/statvfs.h"}}
# The rooms whose other angle includes (packaged libraries, platform) are their own affair.
FREE = ("Host", "Tests", "Bench")
# The client reaches the plug-in through QPluginLoader; linking it would hide a missing symbol.
NEVER_LINKED = {"KXRecordManage", "KXRecordManageObjects"}


def room_of(name):
    for room, allowed, modules in ROOMS:
        if name.as_posix().startswith(room + "/"):
            return room, allowed, modules
    return None, SOURCES, None


def resolve(root, name, text):
    """The file of the tree that a quoted include means, as the compiler looks for it; None when there is none."""
    for base in [name.parent, *map(pathlib.PurePosixPath, ROOTS)]:
        if (root / base / text).is_file():
            return pathlib.PurePosixPath(posixpath.normpath(base / text))
    return None


def judge_quoted(root, name, text):
    room, allowed, _ = room_of(name)
    if GENERATED.match(text):
        return None
    target = resolve(root, name, text)
    if target is None:
        return "no such header in the tree"
    to = room_of(target)[0]
    reached = {to, to.split("/")[0]} if to else set()
    if to == room or reached & allowed:
        return None
    return f"{room} must not include {to}"


def judge_angle(name, text):
    room, _, modules = room_of(name)
    module = text.split("/")[0]
    if module.startswith("Qt") or re.match(r"^Q[A-Z]", text):
        if "/" not in text:
            return f"name the module: <QtModule/{text}>"
        return None if modules is None or module in modules else f"{room} must not include {module}"
    allowed = room.startswith(FREE) or STANDARD.match(text) or text in PLATFORM.get(name.as_posix(), set())
    return None if allowed else f"{room} must not include <{text}>"


def judge(root, name, bracket, text):
    return judge_angle(name, text) if bracket == "<" else judge_quoted(root, name, text)


def linked(root, name):
    """Line and target of each forbidden link in a CMake file."""
    text = (root / name).read_text()
    for call in LINK.finditer(text):
        for word in re.finditer(r"\w+", call.group(1)):
            if word.group(0) in NEVER_LINKED:
                yield text.count("\n", 0, call.start(1) + word.start()) + 1, word.group(0)


def check(root):
    for name in tree.files(root):
        if name.name == "CMakeLists.txt" and name.parts[0] == "Host":
            yield from ((name, number, f"Host must not link {target}") for number, target in linked(root, name))
        if not tree.is_source(name) or room_of(name)[0] is None:
            continue
        for number, line in tree.lines(root, name):
            found = INCLUDE.match(line)
            message = found and judge(root, name, found.group(1), found.group(2))
            if message:
                yield name, number, f"{line.strip()}: {message}"


if __name__ == "__main__":
    tree.run(check)
