#!/usr/bin/env python3
"""Prints a public header as Doxygen reads it; each line stays on its line.

    filter.py LINKS HEADER

The headers leave out what follows from what they say:

- A comment that begins with "@return" also gives the brief description, "Returns ...". Its own place
  is marked by MARK, and finish.py removes the paragraph there.
- An assignment returns the object.
- Each file is documented, or Doxygen doesn't miss the comments of its functions.
- Classes and members that docs/peculiarities.md is about refer to it; LINKS is what pages.py found there.
"""
import json
import re
import sys
from pathlib import Path

import names

MARK = "RETURNED_ABOVE"
COMMENT = re.compile(r"^(\s*)/// ?(.*)$")


def declaration_after(lines, index):
    """The declaration that a comment before the line INDEX belongs to."""
    text = ""
    for line in lines[index:index + 8]:
        if line.strip().startswith("//"):
            continue
        text += " " + line.strip()
        if re.search(r"[;{]$", line) or (text.count("(") and text.count("(") == text.count(")")):
            break
    return text.strip()


def brief_from_return(comment):
    """Gives a comment that begins with @return a brief description."""
    comment[0] = "Returns " + comment[0][len("@return "):]
    end = next((number for number, line in enumerate(comment)
                if number and (not line or line.startswith("@"))), len(comment))
    comment[end - 1] += f" @return {MARK}"


def filtered(lines, links):
    scope, owner = names.Scope(), ""
    index = 0
    while index < len(lines):
        scope.enter(lines[index])
        if (match := names.CLASS.match(lines[index])) and not lines[index].endswith(";"):
            owner = scope.qualified(match[1])
        elif lines[index].startswith("};"):
            owner = ""
        first = index
        while index < len(lines) and (match := COMMENT.match(lines[index])) and not match[2].startswith("<"):
            index += 1
        if index == first:
            yield "/// @file" if lines[index] == "#pragma once" else lines[index]
            index += 1
            continue
        indent = COMMENT.match(lines[first])[1]
        comment = [COMMENT.match(line)[2] for line in lines[first:index]]
        declaration = declaration_after(lines, index)
        if comment[0].startswith("@return "):
            brief_from_return(comment)
        if re.search(r"operator(\+|/)?=\(", declaration):
            comment[-1] += " @return this object"
        add_see(comment, see(scope, owner, declaration, links))
        for line in comment:
            yield f"{indent}/// {line}".rstrip()


def add_see(comment, text):
    if text and "@ingroup" in comment[-1]:
        comment[-1] = f"{text} {comment[-1]}"  # since @ingroup takes the rest of its line
    elif text:
        comment[-1] += " " + text


def see(scope, owner, declaration, links):
    if match := names.CLASS.match(re.sub(r"^template <.*?>\s*(?=class|struct)", "", declaration)):
        found = links["classes"].get(scope.qualified(match[1]), [])
        return " ".join(f'@see Peculiarities: @ref {anchor} "{title}"' for anchor, title in found)
    match = names.MEMBER.search(" " + declaration) if owner else None
    anchor = links["members"].pop(f"{owner}::{match[1]}", "") if match else ""
    return f'@see @ref {anchor} "A peculiarity"' if anchor else ""


if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as file:
        known = json.load(file)
    for output in filtered(Path(sys.argv[2]).read_text(encoding="utf-8").splitlines(), known):
        print(output)
