#!/usr/bin/env python3
"""Makes the reference and tells what is wrong with it.

    check_reference.py CMAKE SOURCES BUILD

An error is each warning of Doxygen (a public member, parameter or result without a comment, a reference to nothing), a
public class or function that isn't in exactly one subject or doesn't say since when it exists, an enumerator
without a comment, a link that leads nowhere, in the site or in the repository's own pages, a colour that isn't its style's, and a
missing product.
"""
import re
import sqlite3
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from contextlib import closing
from pathlib import Path

import links

CLASS_KINDS = ("class", "struct", "union")


def text_of(element):
    return "".join(element.itertext()).strip() if element is not None else ""


def has_since(element):
    return any(section.get("kind") == "since" for section in element.iterfind("./detaileddescription//simplesect"))


class Reference:
    def __init__(self, folder, readme):
        self.folder = folder
        self.readme = readme
        self.xml = folder / "xml"
        self.classes = {}  # by identifier
        self.groups = []
        self.spaces = []
        for compound in ElementTree.parse(self.xml / "index.xml").iterfind("compound"):
            definition = ElementTree.parse(self.xml / f"{compound.get('refid')}.xml").find("compounddef")
            if compound.get("kind") in CLASS_KINDS:
                self.classes[compound.get("refid")] = definition
            elif compound.get("kind") == "group":
                self.groups.append(definition)
            elif compound.get("kind") in ("namespace", "file"):
                self.spaces.append(definition)

    def errors(self):
        yield from self.warnings()
        yield from self.places_of_classes()
        yield from self.places_of_functions()
        yield from self.enumerators()
        yield from self.products()

    def warnings(self):
        for line in (self.folder / "warnings.txt").read_text(encoding="utf-8").splitlines():
            yield line

    def places_of_classes(self):
        inner = {child.get("refid") for definition in self.classes.values() for child in definition.iter("innerclass")}
        for identifier, definition in self.classes.items():
            if identifier in inner:
                continue
            name = definition.findtext("compoundname")
            subjects = [group.findtext("title") for group in self.groups
                        if any(child.get("refid") == identifier for child in group.iterfind("innerclass"))]
            if len(subjects) != 1:
                yield f"{name} is in {len(subjects)} subjects instead of one (@ingroup): {', '.join(subjects)}"
            if not has_since(definition):
                yield f"{name} doesn't say since when it exists (@since)"

    def places_of_functions(self):
        """Those at namespace level, and types and enumerations; Doxygen lists a member of a group there alone."""
        grouped = {}
        for group in self.groups:
            for member in group.iter("memberdef"):
                grouped.setdefault(member.get("id"), []).append(member)
        for members in grouped.values():
            if len(members) > 1:
                yield f"{members[0].findtext('name')} is in {len(members)} subjects instead of one (@ingroup)"
            if not has_since(members[0]):
                yield f"{members[0].findtext('name')} doesn't say since when it exists (@since)"
        ungrouped = {member.get("id"): member.findtext("name") for space in self.spaces
                     for member in space.iter("memberdef") if member.get("id") not in grouped}
        for name in sorted(set(ungrouped.values())):
            yield f"{name} is in 0 subjects instead of one (@ingroup)"

    def enumerators(self):
        definitions = list(self.classes.values()) + self.groups + self.spaces
        for definition in definitions:
            for value in definition.iter("enumvalue"):
                if not text_of(value.find("briefdescription")) and not text_of(value.find("detaileddescription")):
                    yield f"The enumerator {value.findtext('name')} has no comment"

    def products(self):
        yield from self.front_page()
        missing = [name for name in ("zvutil.tag", "zvutil.qch") if not (self.folder / name).is_file()]
        if missing:
            yield f"{', '.join(missing)} isn't there"
            return
        names = [name.text for name in ElementTree.parse(self.folder / "zvutil.tag").iterfind("compound/name")]
        if "zvutil::ZvFilePath" not in names:
            yield "zvutil.tag doesn't name zvutil::ZvFilePath"
        with closing(sqlite3.connect(f"file:{self.folder / 'zvutil.qch'}?mode=ro", uri=True)) as help_file:
            pages = {row[0] for row in help_file.execute("SELECT Name FROM FileNameTable")}
        for page in ("index.html", "classzvutil_1_1ZvFilePath.html", "reference.css"):
            if page not in pages:
                yield f"zvutil.qch has no {page}"

    def front_page(self):
        front = self.folder / "html" / "index.html"
        text = " ".join(front.read_text(encoding="utf-8").split()) if front.is_file() else ""
        chapter = "\n".join(links.Repository.prose(self.readme)).split("\n## ")[0].partition("\n")[2]
        beginning = re.search(r"[A-Za-z][A-Za-z ,]{20,}", chapter.replace("\n", " "))[0]
        if beginning not in text:
            yield f"The front page lacks the beginning of README.md: {beginning}"
        for group in self.groups:
            if f'href="{group.get("id")}.html"' not in text:
                yield f"The front page has no link to the subject {group.findtext('title')}"


class Colours:
    """The colours of the reference, which are those of the library's two styles."""

    BRUSH = re.compile(r"--[\w-]+: (#\w+);\s+/\* (\w+) \*/")

    def __init__(self, sources):
        self.sheet = (sources / "docs" / "reference" / "reference.css").read_text(encoding="utf-8")
        self.styles = ElementTree.parse(sources / "style" / "library.xml").iterfind("Styles/Style")

    def errors(self):
        by_name = {style.get("name"): {brush.get("name"): brush.get("colour") for brush in style.iterfind("Brushes/Brush")}
                   for style in self.styles}
        light, _, dark = self.sheet.partition("@media (prefers-color-scheme: dark)")
        for style, sheet in (("Light", light), ("Dark", dark)):
            found = self.BRUSH.findall(sheet)
            if not found:
                yield f"reference.css has no colours of the style {style}"
            for colour, brush in found:
                expected = by_name[style].get(brush)
                if colour != expected:
                    yield f"reference.css has {colour} for the brush {brush} of {style}, which is {expected}"


def main(cmake, sources, build):
    subprocess.run([cmake, "--build", build, "--target", "docs"], check=True, stdout=subprocess.DEVNULL)
    reference = Reference(Path(build) / "docs", Path(sources) / "README.md")
    site = links.Site(reference.folder / "html")
    repository = links.Repository(Path(sources))
    errors = list(dict.fromkeys([*reference.errors(), *Colours(Path(sources)).errors(),
                                 *site.errors(), *repository.errors()]))
    for error in errors:
        print(error)
    print(f"{len(reference.classes)} classes, {len(reference.groups)} subjects, {site.count} links in the site, "
          f"{repository.count} in the repository's pages; {len(errors)} errors")
    return 1 if errors or not (reference.classes and site.count and repository.count) else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
