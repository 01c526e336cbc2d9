"""What the site needs beyond the extensions of others."""

from __future__ import annotations

import enum
import re
from typing import Any

from docutils import nodes
from sphinx import addnodes
from sphinx.application import Sphinx
from sphinx.util import logging
from sphinx.util.docutils import SphinxDirective

LOGGER = logging.getLogger(__name__)


class WithExamples(SphinxDirective):
    """Puts what follows the declaration in it into the declaration's text, before its members."""

    has_content = True

    def run(self) -> list[nodes.Node]:
        """The declaration, with the rest inside."""
        box = nodes.container()
        self.state.nested_parse(self.content, self.content_offset, box)
        contents = next(iter(box.findall(addnodes.desc_content)), None)
        if contents is not None:
            place = next(
                (at for at, node in enumerate(contents) if not isinstance(node, nodes.paragraph)), len(contents)
            )
            # The list of an enumeration's values has a heading.
            if place > 0 and contents[place - 1].astext() == "Values:":
                place -= 1
            rest = [node for node in box if isinstance(node, nodes.paragraph)]
            for node in rest:
                box.remove(node)
                node["classes"].append("example")
            contents[place:place] = rest
        return list(box)


def tidy(_app: Sphinx, doctree: nodes.document) -> None:
    """Leave of a header's comment the text, as its name is the page's title; count steps by numbers."""
    for steps in doctree.findall(nodes.enumerated_list):
        steps["enumtype"] = "arabic"
    for desc in list(doctree.findall(addnodes.desc)):
        if desc.get("objtype") == "file":
            desc.replace_self([node for content in desc.findall(addnodes.desc_content) for node in content][:])


def list_declarations(_app: Sphinx, doctree: nodes.document) -> None:
    """Have the contents of a page of C++ list its declarations, as Sphinx does for Python."""
    listed = set()
    for signature in doctree.findall(addnodes.desc_signature):
        desc = signature.parent
        if desc.get("domain") != "cpp" or desc.get("objtype") in ("file", "enumerator"):
            continue
        *_, name = [""] + [node.astext() for node in signature.findall(addnodes.desc_name)]
        around = desc.parent
        while around is not None and not isinstance(around, addnodes.desc):
            around = around.parent
        parts = (*(around[0].get("_toc_parts", ()) if around is not None else ()), name)
        if parts not in listed:
            listed.add(parts)
            signature["_toc_parts"] = parts
            signature["_toc_name"] = f"{name}()" if desc.get("objtype") == "function" else name


def insist_on_names(_app: Sphinx, doctree: nodes.document) -> None:
    """Warn of a section whose link would count sections, and so lead elsewhere after an edit."""
    for section in doctree.findall(nodes.section):
        if re.fullmatch(r"id\d+", section["ids"][0]):
            LOGGER.warning("the section's title is that of another, or has no letter", location=section)


def is_field(_app: Sphinx, what: str, _name: str, obj: Any, skip: bool, _options: Any) -> bool | None:
    """Pass over the fields of classes, of which their docstrings tell."""
    if what == "class" and not callable(obj) and not isinstance(obj, (property, enum.Enum)):
        return True
    return skip or None


def signature_of(_app: Sphinx, _what: str, _name: str, obj: Any, *_: Any) -> tuple[str, None] | None:
    """Enumerations are not made by calls."""
    return ("", None) if isinstance(obj, type) and issubclass(obj, enum.Enum) else None


def insist_on_docstrings(_app: Sphinx, what: str, name: str, _obj: Any, _options: Any, lines: list[str]) -> None:
    """Warn of a public name of Python's that says nothing of itself, or a function without an example."""
    if not any(lines) and what not in ("attribute", "data"):
        LOGGER.warning("%s has no docstring", name)
    elif what == "function" and ".. rubric:: Examples" not in lines:
        LOGGER.warning("the docstring of %s has no section Examples", name)


def setup(app: Sphinx) -> dict[str, bool]:
    """Called by Sphinx."""
    app.add_directive("with-examples", WithExamples)
    app.connect("doctree-read", tidy)
    app.connect("doctree-read", list_declarations, priority=400)  # before Sphinx collects them
    app.connect("doctree-read", insist_on_names)
    app.connect("autodoc-skip-member", is_field)
    app.connect("autodoc-process-signature", signature_of)
    # After napoleon has made reStructuredText of it.
    app.connect("autodoc-process-docstring", insist_on_docstrings, priority=900)
    return {"parallel_read_safe": True, "parallel_write_safe": True}
