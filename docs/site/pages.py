"""The project's Markdown: its sections, its programs, and its copies among the sources of the site."""

from __future__ import annotations

import os
import pathlib
import re
import shutil
from collections.abc import Iterator
from typing import NamedTuple

ROOT = pathlib.Path(__file__).resolve().parents[2]

# The pages that do not stand in docs/, whose folders are those of the site.
PAGES = {
    "README.md": "project.md",
    "CHANGELOG.md": "changelog.md",
    "CONTRIBUTING.md": "contributing.md",
    "examples/README.md": "examples.md",
    "data/README.md": "data.md",
}

# What looks like a link there is none: blocks of code, comments, code spans.
_TOKEN = re.compile(
    r"^```(?!`).*?^```$"
    r"|(?P<comment><!--.*?-->)"
    r"|(?P<ticks>`+).+?(?<!`)(?P=ticks)(?!`)"
    r"|(?<=\]\()(?P<link>[^)\s]+)(?=\))",
    re.MULTILINE | re.DOTALL,
)

_HEADING = re.compile(r"(#+) (.*)")

_PROGRAM = re.compile(
    r"^(?:<!-- program\n(?P<frame>.*?)^-->\n+)?```cpp\n(?P<code>.*?)^```$", re.MULTILINE | re.DOTALL
)


def slug(title: str) -> str:
    """What a section's title is in a link to it, on GitHub as in the site."""
    return re.sub(r"[^\w\- ]", "", title.strip().lower()).replace(" ", "-")


class Program(NamedTuple):
    """A program of a page."""

    page: str  # in the site
    title: str  # that of the page, and that of the section where it is another
    anchor: str  # of the section
    code: str  # with what completes it


def fail(text: str) -> None:
    """End the build with a sentence."""
    raise SystemExit(f"docs: {text}")


def place(path: str) -> str:
    """Where a file of the project stands in the site, both from their roots."""
    if path in PAGES:
        return PAGES[path]
    if path.startswith("examples/") and path.endswith((".cpp", ".py")):
        return f"{PAGES['examples/README.md']}#{slug(pathlib.PurePath(path).name)}"
    if path.startswith("docs/"):
        path = path.removeprefix("docs/")
    return path.replace("README.md", "index.md")


def all_pages() -> list[str]:
    """The Markdown that the site has."""
    below = sorted((ROOT / "docs").rglob("*.md"))
    return [path.relative_to(ROOT).as_posix() for path in below] + list(PAGES)


def _target_of(page: str, link: str) -> str:
    """The file that a link of a page leads to."""
    path = os.path.normpath(os.path.join(os.path.dirname(page), link))
    if (ROOT / path).is_dir():
        path += "/README.md"
    if not (ROOT / path).is_file():
        fail(f"{page} has a link to {link}, which is not there")
    return path


def _linked(page: str, link: str, files: set[str]) -> str:
    """What a link of a page is in the site; what is no page of it joins `files`."""
    if re.match(r"\w+:|#", link):
        return link
    path, _, anchor = link.partition("#")
    target = _target_of(page, path)
    put, _, section = place(target).partition("#")
    if not put.endswith(".md"):
        files.add(target)
    anchor = anchor or section
    put = os.path.relpath(put, os.path.dirname(place(page)) or ".")
    return f"{put}#{anchor}" if anchor else put


def for_site(page: str, files: set[str]) -> str:
    """The text of a page with the links of the site, without comments, in the same lines."""

    def replaced(found: re.Match[str]) -> str:
        if found["comment"]:
            return "\n" * found["comment"].count("\n")
        return _linked(page, found["link"], files) if found["link"] else found[0]

    return _TOKEN.sub(replaced, (ROOT / page).read_text(encoding="utf-8"))


def menu(page: str) -> str:
    """A menu of the site for each section of a page: the pages in its lists and tables, in their order."""
    menus = ""
    title = ""
    for line in for_site(page, set()).splitlines():
        if line.startswith("## "):
            title = line.removeprefix("## ")
        elif line.startswith(("- ", "| ")):
            for text, link in re.findall(r"\[([^]]+)\]\(([^)#:]+\.md)\)", line):
                head = f":caption: {title}\n" if title else ":hidden:\n"
                if head not in menus:
                    menus += f"\n```{{toctree}}\n:hidden:\n{head if title else ''}\n```\n"
                menus = menus.removesuffix("```\n") + f"{text} <{link}>\n```\n"
    return menus


def example_programs() -> str:
    """The example programs with what they print, as sections of a page."""
    text = ""
    for link in re.findall(r"\]\(([\w]+\.(?:cpp|py))\)", (ROOT / "examples/README.md").read_text(encoding="utf-8")):
        path = ROOT / "examples" / link
        kind = "cpp" if path.suffix == ".cpp" else "python"
        text += f"\n## {link}\n\n```{kind}\n{path.read_text(encoding='utf-8')}```\n"
        if path.with_suffix(".txt").is_file():
            printed = path.with_suffix(".txt").read_text(encoding="utf-8")
            text += f"\nIt prints:\n\n```text\n{printed}```\n"
    return text


def copy(sources: pathlib.Path) -> None:
    """Put the pages, and what they show or offer, among the sources of the site."""
    files: set[str] = set()
    for page in all_pages():
        text = for_site(page, files)
        if page == "examples/README.md":
            text += example_programs()
        if page == "docs/decisions/README.md":
            text += menu(page)
        target = sources / place(page)
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text, encoding="utf-8")
    for file in files:
        target = sources / place(file)
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(ROOT / file, target)


def programs() -> list[Program]:
    """The C++ programs of all pages, the guides first, and the examples."""
    found = []
    order = sorted(all_pages(), key=lambda page: (not page.startswith("docs/guides/"), page))
    for page in order:
        if page == "examples/README.md":
            found += [
                Program(PAGES[page], f"Example {path.name}", slug(path.name), path.read_text(encoding="utf-8"))
                for path in sorted((ROOT / "examples").glob("*.cpp"))
            ]
        else:
            found += _programs_of(page)
    return found


def _programs_of(page: str) -> Iterator[Program]:
    text = (ROOT / page).read_text(encoding="utf-8")
    blocks = [found.span() for found in re.finditer(r"^```(?!`).*?^```$", text, re.MULTILINE | re.DOTALL)]
    headings = [
        (found.start(), found[2].replace("`", ""))
        for found in re.finditer(r"^(#+) (.*)$", text, re.MULTILINE)
        if not any(first <= found.start() < last for first, last in blocks)
    ]
    title = headings[0][1]
    for found in _PROGRAM.finditer(text):
        section = [heading for start, heading in headings if start < found.start()][-1]
        shown = title if section == title else f"{title}: {section}"
        yield Program(place(page), shown, slug(section), (found["frame"] or "") + found["code"])
