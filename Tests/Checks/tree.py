"""What the checks share: the files of the tree, and reporting by file and line."""
import argparse
import pathlib
import subprocess
import sys

SKIPPED = {"build", ".git", ".cache", "__pycache__"}


def files(root):
    """Relative paths of the tree's files: those known to git or new to it, else all outside build folders."""
    listing = subprocess.run(["git", "-C", str(root), "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                             capture_output=True, check=False)
    if listing.returncode == 0:
        names = {pathlib.PurePosixPath(name) for name in listing.stdout.decode().split("\0") if name}
    else:
        names = {pathlib.PurePosixPath(path.relative_to(root).as_posix()) for path in root.rglob("*")}
        names = {name for name in names if not SKIPPED & set(name.parts)}
    return sorted(name for name in names if (root / name).is_file())


def lines(root, name):
    """Numbered lines of a text file; none of a binary one."""
    data = (root / name).read_bytes()
    if b"\0" in data:
        return []
    return list(enumerate(data.decode(errors="replace").splitlines(), start=1))


def is_source(name):
    return name.suffix in {".h", ".cpp"}


def run(check):
    """Runs check(root), which gives (file, line, message) of each finding; ends with status 1 when there is one."""
    parser = argparse.ArgumentParser()
    parser.add_argument("root", type=pathlib.Path)
    findings = list(check(parser.parse_args().root))
    for name, line, message in findings:
        print(f"{name}:{line}: {message}")
    sys.exit(1 if findings else 0)
