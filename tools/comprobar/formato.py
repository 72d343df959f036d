#!/usr/bin/env python3
"""Fails when a C++ file of the project is not as .clang-format wants it. Usage: formato.py CLANG_FORMAT"""
import pathlib
import subprocess
import sys

FOLDERS = ("src", "simulator", "tests", "bench", "tools")


def main() -> int:
    files = [str(p) for folder in FOLDERS for p in sorted(pathlib.Path(folder).rglob("*")) if p.suffix in (".h", ".cpp")]
    if not files:
        print("no C++ file found: run from the top of the project")
        return 1
    ended = subprocess.run([sys.argv[1], "--dry-run", "-Werror", "--ferror-limit=3", *files], check=False)
    print(f"{len(files)} files looked at")
    return ended.returncode


if __name__ == "__main__":
    sys.exit(main())
