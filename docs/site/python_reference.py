"""The Python reference: a page for each public module."""

from __future__ import annotations

import ast
import pathlib

from pages import ROOT

PACKAGE = ROOT / "python" / "quillon"


def _summary(path: pathlib.Path) -> str:
    text = ast.get_docstring(ast.parse(path.read_text(encoding="utf-8"))) or ""
    return text.partition("\n")[0]


def write(sources: pathlib.Path) -> None:
    """Put the pages of the Python reference among the sources of the site."""
    folder = sources / "reference" / "python"
    folder.mkdir(parents=True, exist_ok=True)
    modules = [PACKAGE / "__init__.py", *sorted(PACKAGE.glob("[!_]*.py"))]
    names = ["quillon" if path.stem == "__init__" else f"quillon.{path.stem}" for path in modules]
    rows = ""
    for name, path in zip(names, modules):
        lines = [name, "=" * len(name), "", f".. automodule:: {name}", "   :members:", "   :undoc-members:", ""]
        (folder / f"{name}.rst").write_text("\n".join(lines), encoding="utf-8")
        rows += f"   * - :doc:`{name}`\n     - {_summary(path)}\n"
    title = "Python reference"
    (folder / "index.rst").write_text(
        f"{title}\n{'=' * len(title)}\n\n"
        "The guide :doc:`/guides/python` shows how the parts go together.\n\n"
        f".. list-table::\n   :header-rows: 1\n\n   * - module\n     - what\n{rows}\n"
        ".. toctree::\n   :hidden:\n\n" + "".join(f"   {name}\n" for name in names),
        encoding="utf-8",
    )
