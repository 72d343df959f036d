#!/usr/bin/env python3
"""Reads the includes of every room and fails on an arrow that is not allowed. Usage: flechas.py TOP

Also fails on a source that no CMakeLists.txt names (it would be neither built nor checked) and on a path or an address
that belongs to somebody's machine.
"""
import pathlib
import re
import sys

AREAS = {"backups", "extraction", "photos", "apps", "services", "reports"}
BELOW_AREAS = {"session", "core", "platform"}

# What each room of src/ may include besides itself.
ARROWS = {
    "platform": set(),
    "core": {"platform"},
    "images": set(),
    "session": {"core", "platform"},
    **{area: set(BELOW_AREAS) for area in AREAS},
    "engine": {"core", "platform", "images"},
    "ui": AREAS | BELOW_AREAS | {"images"},
    "app": {"ui"} | AREAS | BELOW_AREAS,
}
ARROWS["extraction"] |= {"backups"}
ARROWS["photos"] |= {"images"}
ARROWS["reports"] |= AREAS

# Headers of the toolkit that only some rooms may see.
TOOLKIT = (
    (re.compile(r"(QtQuick|QtQml|QtWidgets|QQuick\w*|QQml\w*|QJSEngine|QJSValue)(/|$)"), {"ui", "app"}, "Qt Quick"),
    (re.compile(r"(QtGui/)?(Q(Image|Pixmap|Bitmap|Painter|Picture)\w*)$"), {"ui", "app", "photos", "extraction", "images"}, "Qt Gui images"),
)

INCLUDE = re.compile(r'^\s*#\s*include\s+(["<])([^">]+)[">]')
SOURCES = {".h", ".cpp", ".qml"}
TEXTS = SOURCES | {".py", ".sh", ".cmake", ".txt", ".md", ".json", ".in", ".desktop", ".xml", ".1", ".qrc", ""}
# Paths of a home or of a workplace, and the addresses of package registries.
FOREIGN = re.compile(r"(?<![\w.$}{*-])/(?:home|root|work|Users)/\w|https?://(?:registry|files|index|deb|mirror)[.]")


def includes(path):
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        if match := INCLUDE.match(line):
            yield number, match[1] == '"', match[2]


def room_faults(top, path):
    """The faults of one file of src/."""
    source = top / "src"
    parts = path.relative_to(source).parts
    room = parts[0]
    if room not in ARROWS:
        yield 1, f"{room} is not a room of this house"
        return
    for number, quoted, name in includes(path):
        for pattern, allowed, what in TOOLKIT:
            if not quoted and pattern.match(name) and room not in allowed:
                yield number, f"{room} sees {what} (<{name}>)"
        if not quoted or name.endswith(".moc"):
            continue
        target = name.split("/")[0]
        if target not in ARROWS or not (source / name).is_file():
            yield number, f'"{name}" is not written from src/'
        elif target != room and target not in ARROWS[room]:
            yield number, f"{room} -> {target} is not an allowed arrow"


def simulator_faults(top, path):
    """The simulated phone shares no code with the program: each of its own includes stands beside it."""
    simulator = top / "simulator"
    for number, quoted, name in includes(path):
        if quoted and not name.endswith(".moc") and not any(
                (root / name).is_file() for root in (path.parent, simulator, simulator / "contenido")):
            yield number, f'"{name}" is not a file of simulator/'
        elif quoted and top / "src" in (path.parent / name).resolve().parents:
            yield number, f"simulator -> src is not an allowed arrow ({name})"


def unlisted(top):
    """The sources of src/ and simulator/ that no CMakeLists.txt at or above their folder names."""
    for folder in ("src", "simulator"):
        for path in sorted((top / folder).rglob("*")):
            if path.suffix in (".cpp", ".qml") and not is_listed(top / folder, path):
                yield path, 1, "no CMakeLists.txt names this file"


def is_listed(stop, path):
    for folder in path.parents:
        lists = folder / "CMakeLists.txt"
        if lists.is_file():
            text = lists.read_text(encoding="utf-8")
            name = re.escape(path.relative_to(folder).as_posix())
            if "file(GLOB" in text or re.search(rf"(?<![\w./-]){name}(?![\w.])", text):
                return True
        if folder == stop:
            return False
    return False


def foreign_words(top):
    for path in sorted(top.rglob("*")):
        inside = path.relative_to(top).parts
        if inside[0] in ("build", ".git") or path.suffix not in TEXTS or not path.is_file():
            continue
        try:
            lines = path.read_text(encoding="utf-8").splitlines()
        except UnicodeDecodeError:
            continue
        for number, line in enumerate(lines, 1):
            if match := FOREIGN.search(line):
                yield path, number, f"names a place of one machine: {match[0]}…"


def faults(top):
    for folder, rule in (("src", room_faults), ("simulator", simulator_faults)):
        for path in sorted((top / folder).rglob("*")):
            if path.suffix in (".h", ".cpp"):
                for number, what in rule(top, path):
                    yield path, number, what
    yield from unlisted(top)
    yield from foreign_words(top)


def main():
    top = pathlib.Path(sys.argv[1]).resolve()
    found = [f"{path.relative_to(top)}:{number}: {what}" for path, number, what in faults(top)]
    files = sum(1 for folder in ("src", "simulator") for p in (top / folder).rglob("*") if p.suffix in (".h", ".cpp"))
    print("\n".join([*found, f"{files} files read, {len(found)} faults"]))
    return 1 if found or not files else 0


if __name__ == "__main__":
    sys.exit(main())
