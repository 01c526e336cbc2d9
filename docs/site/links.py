"""The links inside the site: each leads to a page and a place that are there.

    links.py HTML

Sphinx warns of broken links in pages; this sees those that Sphinx or its extensions make as well.
"""

from __future__ import annotations

import pathlib
import sys
from html.parser import HTMLParser
from urllib.parse import unquote, urlsplit


class _Page(HTMLParser):
    def __init__(self, path: pathlib.Path) -> None:
        super().__init__()
        self.places: set[str] = set()
        self.links: list[str] = []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag: str, attrs: list[tuple[str, str | None]]) -> None:
        """Keep what it is called and where it leads."""
        for name, value in attrs:
            if name == "id" and value:
                self.places.add(value)
            elif (name == "href" and tag in ("a", "link")) or name == "src":
                self.links.append(value or "")


def broken(site: pathlib.Path) -> list[str]:
    """A sentence for each link that leads nowhere."""
    pages = {path.resolve(): _Page(path) for path in sorted(site.rglob("*.html"))}
    sentences = []
    for path, page in pages.items():
        for link in dict.fromkeys(page.links):
            parts = urlsplit(link)
            if parts.scheme or parts.netloc or link in ("", "#"):
                continue
            target = (path.parent / unquote(parts.path)).resolve() if parts.path else path
            if not target.is_file():
                sentences.append(f"{path.relative_to(site.resolve())}: {link} is not there")
            elif parts.fragment and target in pages and unquote(parts.fragment) not in pages[target].places:
                sentences.append(f"{path.relative_to(site.resolve())}: {link} is no place of that page")
    return sentences


if __name__ == "__main__":
    found = broken(pathlib.Path(sys.argv[1]))
    sys.exit("\n".join(found) if found else 0)
