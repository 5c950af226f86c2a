"""Looks whether the code in the guides and in README is code that is compiled and run, and whether the list of
classes has all public headers.

check_pages.py ROOT

Each block of C++, CMake or shell in docs/guides/*.md and README.md has to stand, line by line and whatever
its indentation, in one of the files that tests compile or run. "// …" alone on a line, or "# …", leaves
something out: what stands before and after it is looked for by itself, in the same file.
"""

import pathlib
import re
import sys

SOURCES = ["examples", "tests/product", "tests/host", "tests/workbench"]
LANGUAGES = {"cpp": (".h", ".cpp"), "cmake": ("CMakeLists.txt",)}


def lines_of(text):
    return [line.strip() for line in text.splitlines() if line.strip()]


def sources(root, endings):
    for folder in SOURCES:
        for file in sorted((root / folder).rglob("*")):
            if file.name.endswith(endings):
                yield lines_of(file.read_text(encoding="utf-8"))


def contains(source, part):
    return any(source[i : i + len(part)] == part for i in range(len(source) - len(part) + 1))


def parts_of(block):
    part = []
    for line in lines_of(block):
        if line in ("// …", "# …"):
            yield part
            part = []
        else:
            part.append(line)
    yield part


def missing_headers(root):
    """The list of classes names each public header, and no other file."""
    include = root / "include"
    headers = {str(file.relative_to(include)) for file in include.rglob("*.h")}
    public = {header for header in headers if not re.match("zvutil/(impl|details)/", header)}
    listed = set(re.findall(r"`(zvutil/[\w/]+\.h)`", (root / "docs/classes.md").read_text(encoding="utf-8")))
    for header in sorted(public - listed):
        yield f"docs/classes.md: {header} isn't listed"
    for header in sorted(listed - headers):
        yield f"docs/classes.md: there is no {header}"


def uncompiled_blocks(root):
    texts = {language: list(sources(root, endings)) for language, endings in LANGUAGES.items()}
    for page in [root / "README.md", *sorted((root / "docs/guides").glob("*.md"))]:
        text = page.read_text(encoding="utf-8")
        for match in re.finditer(r"^```(\w+)\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
            language, block = match.groups()
            if language not in texts:
                continue
            parts = [part for part in parts_of(block) if part]
            if not any(all(contains(source, part) for part in parts) for source in texts[language]):
                line = text.count("\n", 0, match.start()) + 1
                yield f"{page.relative_to(root)}:{line}: no test compiles this block"


def main():
    root = pathlib.Path(sys.argv[1])
    found = [*uncompiled_blocks(root), *missing_headers(root)]
    print("\n".join(found))
    return 1 if found else 0


sys.exit(main())
