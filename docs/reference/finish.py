#!/usr/bin/env python3
"""Finishes the site that Doxygen has made.

    finish.py HTML

Removes the paragraphs "Returns" whose text is the brief description already (see filter.py).
"""
import re
import sys
from pathlib import Path

from filter import MARK

PARAGRAPH = re.compile(rf'<dl class="section return"><dt>Returns</dt><dd>{MARK} ?</dd></dl>\n?')

for page in Path(sys.argv[1]).glob("*.html"):
    text = page.read_text(encoding="utf-8")
    finished = PARAGRAPH.sub("", text)
    if MARK in finished:
        sys.exit(f"{page.name}: {MARK} stands where it isn't expected")
    if finished != text:
        page.write_text(finished, encoding="utf-8")
