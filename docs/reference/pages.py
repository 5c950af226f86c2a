#!/usr/bin/env python3
"""Makes the pages of the reference out of the repository's Markdown, for Doxygen.

    pages.py ROOT OUTPUT

OUTPUT gets a file for each page, with anchors as a repository's web view has them and links that lead to other
pages of the site; links to anything else in the repository become plain text. The front page is the first chapter
of README.md: everything before its second heading of the second level. Besides OUTPUT gets

  pictures.doxyfile   the pictures that the pages show, as a setting of Doxygen
  links.json          which classes and members docs/peculiarities.md is about, for filter.py
"""
import json
import re
import sys
from pathlib import Path

import names

# What those chapters of docs/peculiarities.md are about that aren't named for a class.
CHAPTER_CLASSES = {
    "Exceptions": ["ZvException", "ZvFileException"],
    "Reading XML": ["ZvXMLReadFile", "abstract_xml_document_reader", "abstract_xml_element_reader"],
    "Writing XML": ["ZvBasicXMLSaveFile", "basic_abstract_xml_document_writer", "basic_abstract_xml_element_writer"],
    "Styles": ["ZvStyle", "ZvStyleLibrary", "ZvStyleManager", "ZvStyleModel", "ZvStyleEditor", "ZvEditorStyle",
               "ZvNamedColour"],
    "Tables and the clipboard": ["ZvTable", "ZvClipboard", "ZvClipboardData"],
    "Background work": ["stop_source", "stop_token", "BackgroundRequestManager", "abstract_request",
                        "abstract_response", "ZvAbstractIterativeProcess"],
    "Item models": ["ZvMultiDirectoryListModel", "ZvChildProxyModel", "ModelTest"],
    "Widgets and document windows": ["ZvContentWidget", "ZvProcessingIndicator", "ZvProgressLineEdit", "ZvSearchBar",
                                     "ZvResponsiveImage"],
}

IMAGE = re.compile(r"!\[([^\[\]]*)\]\(([^()\s]+)(?: \"[^\"]*\")?\)")
LINK = re.compile(r"\[((?:[^\[\]]|\[[^\]]*\])*)\]\(([^()\s]+)(?: \"[^\"]*\")?\)")
IMAGE_TAG = re.compile(r"<img\b[^>]*?\bsrc=\"([^\"]+)\"[^>]*>")
CODE = re.compile(r"(`+)(.+?)\1")


def slug(heading):
    """The anchor that a repository's web view gives a heading."""
    text = LINK.sub(r"\1", heading).replace("`", "").strip().lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


def anchor(page, heading_slug):
    return f"{page}_{heading_slug}".replace("-", "_")


def is_fence(line):
    return line.lstrip().startswith(("```", "~~~"))


def first_chapter(text):
    lines, headings, in_code = [], 0, False
    for line in text.splitlines():
        if is_fence(line):
            in_code = not in_code
        elif not in_code and line.startswith("## "):
            headings += 1
            if headings == 2:
                break
        lines.append(line)
    return "\n".join(lines) + "\n"


class Site:
    def __init__(self, root, output):
        self.root = Path(root)
        self.output = Path(output)
        self.classes = names.public_classes(root)
        self.pictures = set()
        self.links = {"classes": {}, "members": {}}
        documents = sorted(self.root.glob("docs/guides/*.md")) + sorted(self.root.glob("docs/*.md"))
        paths = [path.relative_to(root) for path in documents]
        self.pages = {path.as_posix(): re.sub(r"\W", "_", "_".join(("page", *path.with_suffix("").parts[1:])))
                      for path in paths}

    def write_all(self):
        self.output.mkdir(parents=True, exist_ok=True)
        for old in self.output.iterdir():
            old.unlink()
        self.write_page("README.md", "index", first_chapter(self.read("README.md")) + self.subjects())
        for path, page in self.pages.items():
            self.write_page(path, page, self.read(path))
        pictures = " \\\n    ".join(f'"{picture}"' for picture in sorted(self.pictures))
        (self.output / "pictures.doxyfile").write_text(f"HTML_EXTRA_FILES = {pictures}\n", encoding="utf-8")
        (self.output / "links.json").write_text(json.dumps(self.links, indent=1), encoding="utf-8")

    def read(self, path):
        return (self.root / path).read_text(encoding="utf-8")

    def subjects(self):
        """What follows the first chapter on the front page."""
        groups = re.findall(r"@defgroup (\w+) .*\n/// @brief (.*)", self.read("docs/reference/subjects.dox"))
        lines = ["", "## Classes and functions by subject", "", "| subject | what is there |", "|---|---|"]
        lines += [f"| @ref {name} | {brief} |" for name, brief in groups]
        lines += ["", "## Pages", ""]
        lines += [f"- @ref {page}" for path, page in self.pages.items()
                  if path.endswith("/README.md") or not path.startswith("docs/guides/")]
        return "\n".join(lines) + "\n"

    def write_page(self, path, page, text):
        lines, in_code, chapter = [], False, ""
        for line in text.splitlines():
            if is_fence(line):
                in_code = not in_code
            elif not in_code:
                if match := re.match(r"(#+) +(.*?) *$", line):
                    title, level = match[2], len(match[1])
                    chapter = title if level == 2 else chapter
                    identifier = page if level == 1 else anchor(page, slug(title))
                    if path == "README.md" and level == 1:
                        identifier = "mainpage"
                    line = f"{match[1]} {self.plain(title)} {{#{identifier}}}"
                    if path.endswith("peculiarities.md") and level == 2:
                        self.note_chapter(title, identifier)
                else:
                    if path.endswith("peculiarities.md") and line.startswith("| "):
                        line = self.row_anchors(chapter, line)
                    line = self.rewrite(path, line)
            lines.append(line)
        name = "mainpage.md" if path == "README.md" else page + ".md"
        (self.output / name).write_text("\n".join(lines) + "\n", encoding="utf-8")

    @staticmethod
    def plain(title):
        return LINK.sub(r"\1", title).replace("`", "")

    def rewrite(self, path, line):
        line = re.sub(r"</?picture>|<source\b[^>]*>", "", line)
        line = IMAGE_TAG.sub(lambda match: match[0].replace(match[1], self.picture(path, match[1])), line)
        line = IMAGE.sub(lambda match: f'<img src="{self.picture(path, match[2])}" alt="{match[1]}"/>', line)
        line = LINK.sub(lambda match: self.link(path, match), line)
        return CODE.sub(self.code, line)

    def picture(self, path, target):
        if re.match(r"\w+:", target):
            return target
        picture = (self.root / path).parent / target
        self.pictures.add(picture.resolve().as_posix())
        return picture.name

    def link(self, path, match):
        text, target = match[1], match[2]
        if re.match(r"\w+:", target):
            return match[0]
        file, _, fragment = target.partition("#")
        folder = (self.root / path).parent
        file = (folder / file).resolve().relative_to(self.root.resolve()).as_posix() if file else path
        if file == "README.md":
            return f'@ref index "{text}"'
        if file not in self.pages or "<img" in text:
            return text
        page = self.pages[file]
        title = text.replace("`", "").replace('"', "'")
        # The guides stand below their list in the tree of pages.
        reference = "@subpage" if path.endswith("/README.md") and file.startswith("docs/guides/") else "@ref"
        return f'{reference} {anchor(page, fragment) if fragment else page} "{title}"'

    def code(self, match):
        """A class or member in code font leads to its documentation."""
        name, _, member = match[2].partition("::")
        found = self.classes.get(name)
        if not found or (member and not re.fullmatch(r"\w+", member)):
            return match[0]
        if member in found.members:
            return f'<code>@ref {found.qualified}::{member} "{name}::{member}"</code>'
        rest = f"::{member}" if member else ""
        return f'<code>@ref {found.qualified} "{name}"{rest}</code>'

    def chapter_classes(self, chapter):
        titled = [code[1].split("::")[-1] for code in CODE.findall(chapter)]
        return [self.classes[name] for name in titled + CHAPTER_CLASSES.get(chapter, []) if name in self.classes]

    def note_chapter(self, chapter, identifier):
        for found in self.chapter_classes(chapter):
            self.links["classes"].setdefault(found.qualified, []).append([identifier, self.plain(chapter)])

    def row_anchors(self, chapter, row):
        """Puts anchors before a row for the members that it is about, and notes them."""
        behaviour = row.split(" | ")[0]
        length = len(behaviour)
        codes = [code[1] for code in CODE.findall(behaviour)]
        candidates = self.chapter_classes(chapter)
        named = [found for found in candidates if any(code.split("::")[0] == found.name for code in codes)]
        anchors = ""
        for code in codes:
            member = re.sub(r"\(.*", "", code.split("::")[-1])
            owners = [found for found in (named or candidates)
                      if member in found.members and member != found.name]
            if len(owners) != 1:
                continue
            key = f"{owners[0].qualified}::{member}"
            behaviour = behaviour.replace(f"`{code}`", f'<code>@ref {key} "{code}"</code>')
            if key not in self.links["members"]:
                identifier = "peculiarity_" + re.sub(r"\W+", "_", key)
                self.links["members"][key] = identifier
                anchors += f"@anchor {identifier} "
        return "| " + anchors + behaviour[2:] + row[length:]


if __name__ == "__main__":
    Site(sys.argv[1], sys.argv[2]).write_all()
