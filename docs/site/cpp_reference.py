"""The C++ reference: a page for each public header, from Doxygen's XML, by Breathe's directives."""

from __future__ import annotations

import pathlib
import re
from collections.abc import Iterable
from typing import NamedTuple
from xml.etree import ElementTree

from pages import ROOT, Program, fail, programs

# What stands for itself: how Breathe calls a kind of Doxygen's.
_DIRECTIVES = {
    "class": "doxygenclass",
    "struct": "doxygenstruct",
    "union": "doxygenunion",
    "function": "doxygenfunction",
    "enum": "doxygenenum",
    "typedef": "doxygentypedef",
    "variable": "doxygenvariable",
    "define": "doxygendefine",
}
_CLASSES = ("class", "struct", "union")

# The folders of the contract, which all others stand on, with their namespaces.
_CONTRACT = {"ObjectModel": "object_model", "tabra": "tabra"}

# How many places to link to as examples of a name.
_MOST_EXAMPLES = 3


class Entity(NamedTuple):
    """What a header declares by itself, not as part of a class."""

    kind: str
    name: str  # with all namespaces
    arguments: str  # of a function
    line: int

    def plain_name(self) -> str:
        """The last part of the name, without template arguments."""
        return re.sub(r"<.*", "", self.name).split("::")[-1].strip()

    def namespace(self) -> str:
        """The innermost namespace; empty for none."""
        return (["", *re.sub(r"<.*", "", self.name).split("::")[:-1]])[-1]

    def directive(self) -> list[str]:
        """The lines that show it."""
        lines = [f".. {_DIRECTIVES[self.kind]}:: {self.name}{self.arguments}"]
        if self.kind in _CLASSES:
            lines += ["   :members:", "   :protected-members:", "   :undoc-members:"]
        return lines


class Header(NamedTuple):
    """A public header."""

    path: str  # from the project's root
    name: str  # as programs include it
    library: str  # the folder below interface/, without quillon/
    text: str
    brief: str  # as reStructuredText
    entities: list[Entity]

    def short_name(self) -> str:
        """Its name below the folder of its library."""
        return self.name.removeprefix("quillon/").removeprefix(f"{_CONTRACT.get(self.library, self.library)}/")

    def page(self) -> str:
        """Its page in the site, without a suffix."""
        return f"reference/cpp/{self.name.removesuffix('.h')}"


def _location(node: ElementTree.Element) -> tuple[str, int]:
    place = node.find("location")
    return place.get("file", ""), int(place.get("line", "0"))


def _joined(description: ElementTree.Element) -> None:
    """Join lines: Doxygen leaves line ends in quotations, which Breathe takes for ends of paragraphs."""
    for element in description.iter():
        if element.tag not in ("verbatim", "codeline", "highlight"):
            element.text = (element.text or "").replace("\n", " ")
        if element is not description:
            element.tail = (element.tail or "").replace("\n", " ")


def _compounds(xml: pathlib.Path) -> list[ElementTree.Element]:
    """What Doxygen says of each class, namespace and file; the files of it are made fit for Breathe."""
    found = []
    for path in sorted(xml.glob("*.xml")):
        if path.name != "index.xml":
            tree = ElementTree.parse(path)
            for description in [*tree.iter("briefdescription"), *tree.iter("detaileddescription")]:
                _joined(description)
            tree.write(path, encoding="utf-8", xml_declaration=True)
            found += tree.getroot().findall("compounddef")
    return found


def _entities(compounds: list[ElementTree.Element]) -> dict[str, list[Entity]]:
    """All entities, by the header that declares them."""
    classes = {each.findtext("compoundname") for each in compounds if each.get("kind") in _CLASSES}
    found: dict[str, list[Entity]] = {}
    for compound in compounds:
        name = compound.findtext("compoundname", "")
        if compound.get("kind") in _CLASSES:
            outer = re.sub(r"<.*", "", name).rpartition("::")[0]
            if outer not in classes:
                file, line = _location(compound)
                found.setdefault(file, []).append(Entity(compound.get("kind", ""), name, "", line))
        elif compound.get("kind") in ("namespace", "file"):
            scope = f"{name}::" if compound.get("kind") == "namespace" else ""
            for member in compound.iter("memberdef"):
                file, line = _location(member)
                arguments = member.findtext("argsstring", "") if member.get("kind") == "function" else ""
                entity = Entity(member.get("kind", ""), scope + member.findtext("name", ""), arguments, line)
                found.setdefault(file, []).append(entity)
    return found


def _headers(compounds: list[ElementTree.Element]) -> list[Header]:
    """All public headers."""
    entities = _entities(compounds)
    briefs = {
        _location(compound)[0]: _restructured(compound.find("briefdescription"))
        for compound in compounds
        if compound.get("kind") == "file"
    }
    found = []
    for path in sorted(ROOT.glob("*/interface/**/*.h")):
        relative = path.relative_to(ROOT).as_posix()
        name = relative.partition("/interface/")[2]
        library = pathlib.PurePath(relative).parts[0]
        those = sorted(entities.get(relative, []), key=lambda each: each.line)
        found.append(Header(relative, name, library, path.read_text(encoding="utf-8"), briefs[relative], those))
    return found


def _included(text: str) -> list[str]:
    return re.findall(r"^ *# *include <([^>]+)>", text, re.MULTILINE)


def _reached(text: str, by_name: dict[str, Header]) -> set[str]:
    """The public headers that a program includes, directly or not."""
    reached: set[str] = set()
    waiting = _included(text)
    while waiting:
        name = waiting.pop()
        if name in by_name and name not in reached:
            reached.add(name)
            waiting += _included(by_name[name].text)
    return reached


def _uses(code: str, entity: Entity) -> bool:
    """Whether a program names an entity whose header it includes."""
    if entity.plain_name().startswith("operator"):
        # It stands between values of the type that it is for.
        operand = re.search(r"(\w+) *&", entity.arguments)
        symbol = entity.plain_name().removeprefix("operator")
        return operand is not None and f" {symbol} " in code and re.search(rf"\b{operand[1]}\b", code) is not None
    ending = r"\s*(?:<[^;()]*>)?\s*\(" if entity.kind == "function" else r"(?!\w)"
    namespace = entity.namespace()
    for found in re.finditer(r"(?:(\w+)::)?(?<!\w)" + re.escape(entity.plain_name()) + ending, code):
        if found[1] is not None:
            if found[1] == namespace:
                return True
        # Functions are found by their arguments, everything else needs the namespace.
        elif entity.kind == "function" or not namespace:
            return True
        elif re.search(rf"using namespace [\w:]*\b{namespace};", code):
            return True
    return False


def _examples(header: Header, reached: Iterable[tuple[Program, set[str]]]) -> dict[str, list[str]]:
    """Links to the programs that show each entity of a header, first those that ask for the header."""
    found: dict[str, list[str]] = {}
    for program, names in sorted(reached, key=lambda each: header.name not in _included(each[0].code)):
        if header.name in names:
            for entity in header.entities:
                link = f":ref:`{program.title} <{program.page}#{program.anchor}>`"
                those = found.setdefault(entity.name, [])
                if link not in those and _uses(program.code, entity):
                    those.append(link)
    return {name: those[:_MOST_EXAMPLES] for name, those in found.items() if those}


def _header_page(header: Header, examples: dict[str, list[str]]) -> str:
    lines = [header.name, "=" * len(header.name), ""]
    lines += [".. code-block:: cpp", "", f"   #include <{header.name}>", ""]
    lines += [f".. doxygenfile:: {header.path}", "   :sections: briefdescription detaileddescription", ""]
    for entity in header.entities:
        lines += [".. with-examples::", ""]
        lines += [f"   {line}" for line in entity.directive()] + [""]
        if entity.name in examples:
            lines += ["   Example: " + "; ".join(examples[entity.name]), ""]
    return "\n".join(lines)


def _table(rows: list[tuple[str, ...]], head: tuple[str, ...]) -> list[str]:
    lines = [".. list-table::", "   :header-rows: 1", ""]
    for row in [head, *rows]:
        lines += [f"   {'*' if first else ' '} - {cell}" for first, cell in zip([True] + [False] * len(row), row)]
    return [*lines, ""]


def _restructured(node: ElementTree.Element | None) -> str:
    """The text of a description, as reStructuredText."""
    if node is None:
        return ""
    text = re.sub(r"([\\*`|_])", r"\\\1", node.text or "")
    for child in node:
        inner = "".join(child.itertext())
        text += f"``{inner}``" if child.tag == "computeroutput" else _restructured(child)
        text += re.sub(r"([\\*`|_])", r"\\\1", child.tail or "")
    return " ".join(text.split())


def _library_page(folder: str, those: list[Header], namespaces: dict[str, str]) -> str:
    name, text = _library(folder, namespaces)
    lines = [name, "=" * len(name), "", text, ""]
    target = {"object_model": "quillon::object_model", "tabra": "tabra::tabra"}.get(name, name)
    lines += [f"CMake target ``{target}``; see :doc:`/install`.", ""]
    rows = [(f":doc:`{each.name} </{each.page()}>`", each.brief) for each in those]
    lines += _table(rows, ("header", "what"))
    lines += [".. toctree::", "   :hidden:", ""]
    return "\n".join(lines + [f"   {each.short_name()} </{each.page()}>" for each in those]) + "\n"


def _library(folder: str, namespaces: dict[str, str]) -> tuple[str, str]:
    """The namespace of a folder, and what it says of itself."""
    name = _CONTRACT.get(folder, f"quillon::{folder}")
    if name not in namespaces:
        fail(f"docs/site/namespaces.dox says nothing of the namespace {name} of {folder}/")
    return name, namespaces[name]


def _namespaces(compounds: list[ElementTree.Element]) -> dict[str, str]:
    """What each namespace says of itself."""
    return {
        compound.findtext("compoundname", ""): " ".join(
            _restructured(compound.find(part)) for part in ("briefdescription", "detaileddescription")
        ).strip()
        for compound in compounds
        if compound.get("kind") == "namespace"
    }


def _insist_on_examples(header: Header, examples: dict[str, list[str]]) -> None:
    """Fail for a function that no program shows, and for a header of these libraries of which none shows anything."""
    missing = [each for each in header.entities if each.name not in examples]
    if not (header.name.startswith("quillon/") and not examples):
        missing = [each for each in missing if each.kind == "function"]
    if missing:
        names = ", ".join(dict.fromkeys(entity.plain_name() for entity in missing))
        fail(
            f"no program of a guide or example shows {names} of {header.path}: "
            "add one to a page in docs/guides/"
        )


def write(xml: pathlib.Path, sources: pathlib.Path) -> None:
    """Put the pages of the C++ reference among the sources of the site."""
    compounds = _compounds(xml)
    all_headers = _headers(compounds)
    namespaces = _namespaces(compounds)
    by_name = {header.name: header for header in all_headers}
    reached = [(program, _reached(program.code, by_name)) for program in programs()]
    shown = 0
    for header in all_headers:
        examples = _examples(header, reached)
        _insist_on_examples(header, examples)
        shown += len(examples)
        target = sources / f"{header.page()}.rst"
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(_header_page(header, examples), encoding="utf-8")

    folders = list(dict.fromkeys(header.library for header in all_headers))
    folders.sort(key=lambda folder: (folder not in _CONTRACT, folder))
    rows = []
    for folder in folders:
        those = [header for header in all_headers if header.library == folder]
        target = sources / f"reference/cpp/{_CONTRACT.get(folder, folder)}.rst"
        target.write_text(_library_page(folder, those, namespaces), encoding="utf-8")
        name, text = _library(folder, namespaces)
        rows.append((f":doc:`{name} <{target.stem}>`", text))
    entities = sum(len({entity.name for entity in header.entities}) for header in all_headers)
    print(f"{shown} of {entities} names of the C++ reference have links to examples")

    title = "C++ reference"
    lines = [title, "=" * len(title), "", "Each public header, by the library that it belongs to.", ""]
    lines += _table(rows, ("library", "what"))
    lines += [".. toctree::", "   :hidden:", "", *(f"   {_CONTRACT.get(folder, folder)}" for folder in folders), ""]
    (sources / "reference/cpp/index.rst").write_text("\n".join(lines), encoding="utf-8")
