#!/usr/bin/env python3
"""No file that the tests left behind shows a password or a key: canaries.py FOLDER HEADER. The files go afterwards.

HEADER lists the words to look for. What a user gives the client, its configuration and its records, may show them.
"""
import base64
import pathlib
import re
import shutil
import sys
import urllib.parse

GIVEN = {"config.json", "records.json"}


def base64_forms(text):
    """What of the text's base64 does not depend on its neighbours, for each position in a group of three bytes."""
    for skipped in range(3):
        first = -(-skipped * 8 // 6)
        yield base64.b64encode(bytes(skipped) + text + bytes(3))[first:(skipped + len(text)) * 8 // 6]


def forms(word):
    text = word.encode()
    return {text, urllib.parse.quote(word).encode(), urllib.parse.quote_plus(word).encode(), text.hex().encode(),
            word.encode("utf-16-le"), word.encode("utf-16-be"), *base64_forms(text)}


def findings(folder, words):
    for path in sorted(folder.rglob("*")):
        name = path.relative_to(folder).as_posix()
        content = path.read_bytes() if path.is_file() and path.name not in GIVEN else b""
        for word, form in words:
            if path.suffix == ".mp4" and form != word.encode():
                continue  # a recording is long, and what we write into one is what a site sent
            if form in name.encode() or form in content:
                place = max(content.find(form), 0)
                yield name, word, content[max(place - 60, 0):place + 60]


def check(folder, header):
    words = [(word, form) for word in re.findall(r'"([^"]+)"', header.read_text()) for form in sorted(forms(word))]
    found = list(findings(folder, words))
    for name, word, around in found:
        print(f"{name}: shows \"{word}\": {around}")
    count = sum(path.is_file() for path in folder.rglob("*"))
    for path in folder.glob("*/*"):
        shutil.rmtree(path) if path.is_dir() and not path.is_symlink() else path.unlink()
    print(f"{count} files looked at")
    return 1 if found or not words else 0


if __name__ == "__main__":
    sys.exit(check(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])))
