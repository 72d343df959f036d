#!/usr/bin/env python3
"""Runs clang-tidy over the project's own sources and fails at the first kind of finding that .clang-tidy enables.

Usage: lint.py CLANG_TIDY BUILD_TREE [file...]

What was found clean is remembered in build/lint by the hash of everything that decides the answer: the file, the
project headers that it reaches, its compile command, the configuration and the version of clang-tidy. Only clean
results are remembered, so a fault is told on every run until it is mended.
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import time

CACHE = pathlib.Path("build/lint")
MONTH = 30 * 24 * 3600
INCLUDE = re.compile(rb'^\s*#\s*include\s+"([^"]+)"', re.M)
# Options of the compiler that is used for building which clang does not know.
GCC_ONLY = ("-mno-direct-extern-access", "-fconcepts", "-fno-gnu-unique")


def compile_arguments(command: str) -> list[str]:
    """The options of one compile command, without compiler, input and output."""
    words = shlex.split(command)
    while words and not words[0].startswith("-"):
        words.pop(0)
    kept, skip = [], False
    for word in words:
        if skip:
            skip = False
        elif word in ("-o", "-c", "-MF", "-MT", "-MQ"):
            skip = True
        elif word not in ("-MD", "-MMD", "-Werror", *GCC_ONLY):
            kept.append(word)
    return kept


def reached_files(source: pathlib.Path, roots: list[pathlib.Path]) -> list[pathlib.Path]:
    """The file and every project header that it includes, directly or not."""
    seen, waiting = [], [source]
    while waiting:
        path = waiting.pop()
        if path in seen:
            continue
        seen.append(path)
        for name in INCLUDE.findall(path.read_bytes()):
            for root in (path.parent, *roots):
                candidate = root / os.fsdecode(name)
                if candidate.is_file():
                    waiting.append(candidate.resolve())
                    break
    return sorted(seen)


def key_of(entry: dict, arguments: list[str], common: bytes, tree: str) -> str:
    source = pathlib.Path(entry["file"]).resolve()
    digest = hashlib.sha256(common)
    digest.update(" ".join(arguments).replace(tree, "TREE").encode())
    for path in reached_files(source, [pathlib.Path("src").resolve()]):
        digest.update(os.fsencode(path.relative_to(pathlib.Path.cwd())) + b"\0" + path.read_bytes())
    return digest.hexdigest()


def tidy(program: str, entry: dict, common: bytes, tree: str) -> tuple[str, bool, str]:
    """Gives the file, whether it is clean, and what clang-tidy said."""
    arguments = compile_arguments(entry["command"])
    mark = CACHE / key_of(entry, arguments, common, tree)
    if mark.exists():
        mark.touch()
        return entry["file"], True, ""
    ended = subprocess.run(
        [program, "--quiet", "--warnings-as-errors=*", entry["file"], "--", *arguments, "-Wno-unknown-warning-option"],
        capture_output=True, text=True, check=False)
    if ended.returncode == 0:
        mark.touch()
    return entry["file"], ended.returncode == 0, ended.stdout + ("" if ended.returncode == 0 else ended.stderr)


def main() -> int:
    program, tree = sys.argv[1], str(pathlib.Path(sys.argv[2]).resolve())
    asked = {str(pathlib.Path(name).resolve()) for name in sys.argv[3:]}
    sources = str(pathlib.Path("src").resolve()) + os.sep
    entries = [e for e in json.loads(pathlib.Path(tree, "compile_commands.json").read_text())
               if e["file"].startswith(sources) and (not asked or e["file"] in asked)]
    if not entries:
        print("the build tree compiles no file of src/")
        return 1
    CACHE.mkdir(parents=True, exist_ok=True)
    for mark in CACHE.iterdir():
        if mark.stat().st_mtime < time.time() - MONTH:
            mark.unlink()
    version = subprocess.run([program, "--version"], capture_output=True, check=True).stdout
    common = version + pathlib.Path(".clang-tidy").read_bytes()
    faulty = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for name, clean, said in pool.map(lambda e: tidy(program, e, common, tree), entries):
            if not clean:
                faulty += 1
                print(f"--- {os.path.relpath(name)}\n{said}")
    print(f"{len(entries)} files looked at, {faulty} with findings")
    return 1 if faulty else 0


if __name__ == "__main__":
    sys.exit(main())
