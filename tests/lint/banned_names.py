#!/usr/bin/env python3
"""Names that must not stand in the core (src/ without shell/), and compiler options that must not stand in the build.

The core's numbers and texts may not depend on a locale, its failures have four types, and its sums have one order.

Usage: banned_names.py ROOT
"""

import re
import sys
from pathlib import Path

HEADERS = r"#\s*include\s*<(?:cctype|ctype\.h|clocale|locale\.h|locale|iostream|sstream|iomanip|format|expected)>"
NUMBERS = r"\b(?:to_string|sto(?:i|l|ll|ul|ull|f|d|ld)|ato(?:i|l|ll|f)|strto(?:l|ll|ul|ull|f|d|ld))\b"
PRINTING = r"\bv?(?:f|s|sn|d)?(?:printf|scanf)\b|\bstd::w?(?:cout|cerr|clog|cin)\b"
CHARACTERS = r"\b(?:is(?:alnum|alpha|blank|cntrl|digit|graph|lower|print|punct|space|upper|xdigit)|to(?:lower|upper))\b"
LOCALE = r"\b(?:setlocale|localeconv|std::locale|imbue)\b"
WIDE = r"\b(?:QString|wchar_t|char8_t|std::wstring)\b"
SUMS = r"\bstd::(?:reduce|transform_reduce|execution)\b"

# No other program is started: none is ever given a file name.
PROGRAMS = r"\b(?:popen|exec[lv]p?e?|posix_spawnp?|v?fork|wordexp)\s*\(|\bstd::system\b|[;{}=(!]\s*system\s*\("

EVERYWHERE = [re.compile(rule) for rule in (HEADERS, NUMBERS, PRINTING, CHARACTERS, LOCALE, WIDE, SUMS, PROGRAMS)]
GETENV = re.compile(r"\bgetenv\b")
GETENV_ALLOWED = {"support/work_file.cpp"}
OPTIONS = re.compile(r"-ffast-math|-Ofast|-funsafe-math|-fassociative-math|-march=|-mfma|-ffp-contract=(?!off)")

# Numbers first: the apostrophe in 1'000 begins no character.
TOKENS = re.compile(
    r"""(?P<keep>(?<!\w)\d(?:'?[\w.])*)|//[^\n]*|/\*.*?\*/|R"(?P<mark>[^(\n]*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"|"""
    r"""'(?:\\.|[^'\\\n])+'""", re.DOTALL)


def bare_code(text):
    """`text` without comments and literals, line by line where it was."""
    return TOKENS.sub(lambda token: token["keep"] or '""' + "\n" * token[0].count("\n"), text)


def foreign_throw(codes):
    """A throw of anything but our four types, be it named or made by a function that gives one."""
    ours = r"Halt|FatalError|Stopped|Refusal"
    makers = {maker for code in codes for maker in re.findall(rf"\b(?:{ours})\s+(\w+)\s*\(", code)}
    return re.compile(rf"\bthrow\b(?!\s*(?:;|(?:tessaly::)?(?:{'|'.join([ours, *sorted(makers)])})\s*[{{(]))")


def hits(path, text, rules):
    for rule in rules:
        for found in rule.finditer(text):
            line = text.count("\n", 0, found.start()) + 1
            start = text.rfind("\n", 0, found.start()) + 1
            yield f"{path}:{line}: {found[0]} in: {text[start:].split(chr(10), 1)[0].strip()}"


def build_files(root):
    for path in sorted(root.rglob("*")):
        parts = path.relative_to(root).parts
        if parts[0].startswith(("build", ".git")):
            continue
        if path.name in ("CMakeLists.txt", "CMakePresets.json") or path.suffix == ".cmake" or parts[0] == "scripts":
            if path.is_file():
                yield path


def main():
    root = Path(sys.argv[1])
    src = root / "src"
    core = {path: bare_code(path.read_text(encoding="latin-1")) for path in sorted(src.rglob("*"))
            if path.suffix in (".h", ".cpp") and path.relative_to(src).parts[0] != "shell"}
    rules = [*EVERYWHERE, foreign_throw(core.values())]
    problems = []
    for path, code in core.items():
        allowed = path.relative_to(src).as_posix() in GETENV_ALLOWED
        problems += hits(path, code, rules if allowed else [*rules, GETENV])
    for path in build_files(root):
        problems += hits(path, path.read_text(encoding="latin-1"), [OPTIONS])
    if not core:
        problems.append(f"no sources below {src}")
    print("\n".join(["Banned:", *problems]) if problems else f"{len(core)} sources without banned names")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
