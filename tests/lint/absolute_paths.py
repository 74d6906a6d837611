#!/usr/bin/env python3
"""No file of the project may hold a path of the machine that it was written on.

Usage: absolute_paths.py ROOT
"""

import re
import subprocess
import sys
from pathlib import Path

MACHINE_PATH = re.compile(rb"(?<![\w.~-])/(?:(?:work|root|Users)/|home/\w)[^\s\"']*")


def project_files(root):
    """What is tracked or could be; without git all that nobody builds."""
    try:
        listed = subprocess.run(["git", "-C", root, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                                check=True, capture_output=True).stdout
        names = sorted(set(listed.decode("utf-8", "surrogateescape").split("\0")) - {""})
        paths = [Path(root) / name for name in names]
    except (OSError, subprocess.CalledProcessError):
        paths = [path for path in sorted(Path(root).rglob("*"))
                 if not path.relative_to(root).parts[0].startswith(("build", ".git"))
                 and "__pycache__" not in path.parts]
    return [path for path in paths if path.is_file()]


def main():
    paths = project_files(sys.argv[1])
    problems = [f"{path}:{number}: {found[0].decode('latin-1')}"
                for path in paths
                for number, line in enumerate(path.read_bytes().split(b"\n"), 1)
                if (found := MACHINE_PATH.search(line))]
    if not paths:
        problems.append(f"no files in {sys.argv[1]}")
    print("\n".join(problems) if problems else f"{len(paths)} files without paths of one machine")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
