#!/usr/bin/env python3
"""Follows every link of pages, in Markdown and in HTML, to files and places in them.

usage: check_links.py ROOT

Prints the links that lead nowhere, and ends with 1 when there are any.  Links to the
network are not followed.
"""

import re
import sys
from functools import lru_cache
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote, urlsplit

MARKDOWN_LINK = re.compile(r"\]\(<?([^()\s>]+)>?(?:\s+\"[^\"]*\")?\)")
CODE = re.compile(r"^```.*?^```$|^(?: {4}|\t).*?$|`[^`\n]*`", re.S | re.M)


class Page(HTMLParser):
    """The links of an HTML page and the places that links can lead to."""

    def __init__(self):
        super().__init__()
        self.links = []
        self.places = set()

    def handle_starttag(self, tag, attrs):
        """Takes note of what a tag links to, and of its name."""
        for name, value in attrs:
            if name in ("id", "name") and value:
                self.places.add(value)
            elif name in ("href", "src") and value:
                self.links.append(value)


def slug(heading):
    """The name of the place of a heading, as hosts of Markdown pages form it."""
    return re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")


@lru_cache(maxsize=None)
def read(path):
    """The links of a page and its places."""
    text = path.read_text(encoding="utf-8")
    if path.suffix == ".html":
        page = Page()
        page.feed(text)
        return page.links, page.places
    prose = CODE.sub("", text)
    headings = re.findall(r"^#+\s+(.*)$", text, re.M)
    return MARKDOWN_LINK.findall(prose), {slug(heading) for heading in headings}


def dead_links(path):
    """The links of a page that lead nowhere."""
    for link in read(path)[0]:
        parts = urlsplit(link)
        if parts.scheme or parts.netloc:
            continue
        target = (path.parent / unquote(parts.path)).resolve() if parts.path else path
        is_page = target.suffix in (".md", ".html")
        if not target.exists():
            yield link
        elif parts.fragment and is_page and unquote(parts.fragment) not in read(target)[1]:
            yield link


def main():
    root = Path(sys.argv[1]).resolve()
    pages = [path for pattern in ("*.md", "*.html") for path in sorted(root.rglob(pattern))
             if "build" not in path.relative_to(root).parts]
    dead = [(path, link) for path in pages for link in dead_links(path)]
    for path, link in dead:
        print(f"{path.relative_to(root)}: {link} leads nowhere")
    print(f"{sum(len(read(path)[0]) for path in pages)} links of {len(pages)} pages")
    return 1 if dead or not pages else 0


sys.exit(main())
