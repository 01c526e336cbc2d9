"""Lays out what Sphinx makes the site of: copies of the Markdown pages, and the references' pages.

    sources.py XML SOURCES

XML is what Doxygen made of the public headers. On GitHub the pages in docs/ are plain Markdown, so
what Sphinx needs beside them, such as menus, is added to the copies.
"""

from __future__ import annotations

import pathlib
import sys

import cpp_reference
import pages
import python_reference

REFERENCE = """
```{toctree}
:hidden:
:caption: Reference

reference/cpp/index
reference/python/index
```
"""


def main() -> None:
    xml, sources = (pathlib.Path(each) for each in sys.argv[1:])
    pages.copy(sources)
    with (sources / "index.md").open("a", encoding="utf-8") as index:
        index.write(pages.menu("docs/README.md") + REFERENCE)
    cpp_reference.write(xml, sources)
    python_reference.write(sources)


if __name__ == "__main__":
    main()
