#!/usr/bin/env python3
"""Finishes the site that Doxygen has made.

    finish.py HTML

- A paragraph "Returns" whose text is the brief description already (see filter.py) goes.
- The head of a class's page links to its lists; links to lists that it hasn't, those of private classes, go.
- An address in code font is an example and no link.
- The search results, which are documents of their own, get the look of the other pages.
"""
import re
import sys
from pathlib import Path

from filter import MARK

PARAGRAPH = re.compile(rf'<dl class="section return"><dt>Returns</dt><dd>{MARK} ?</dd></dl>\n?')
CODE = re.compile(r"<code>.*?</code>", re.DOTALL)
SUMMARY_LINK = re.compile(r'<a href="#([\w-]+)">[^<]*</a> &#124;\s')
ADDRESS = re.compile(r'<a href="(?:https?|file|ftp):[^"]*">(.*?)</a>')

html = Path(sys.argv[1])
for page in html.glob("*.html"):
    text = page.read_text(encoding="utf-8")
    finished = PARAGRAPH.sub("", text)
    finished = SUMMARY_LINK.sub(lambda link: link[0] if f'name="{link[1]}"' in text else "", finished)
    finished = CODE.sub(lambda code: ADDRESS.sub(r"\1", code[0]), finished)
    if MARK in finished:
        sys.exit(f"{page.name}: {MARK} stands where it isn't expected")
    if finished != text:
        page.write_text(finished, encoding="utf-8")

with open(html / "search" / "search.css", "a", encoding="utf-8") as sheet:
    sheet.write((html / "reference.css").read_text(encoding="utf-8"))
