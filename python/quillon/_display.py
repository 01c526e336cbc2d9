"""How objects look in a terminal and in a notebook."""

from __future__ import annotations

import shutil
import sys
from typing import TYPE_CHECKING, Any

import numpy as np

from quillon import _core

if TYPE_CHECKING:
    from quillon._array import Array
    from quillon._compare import Report
    from quillon._dictionary import Dictionary
    from quillon._tables import Table

__all__ = [
    "array_html",
    "array_text",
    "dictionary_html",
    "dictionary_text",
    "report_html",
    "table_html",
    "width_of_terminal",
]

_MOST_LINES = 60
_STYLE = """<style>
.quillon { color-scheme: light dark; font-size: 0.9em; }
.quillon table { border-collapse: collapse; margin: 0.3em 0; }
.quillon td, .quillon th { padding: 0.15em 0.7em; text-align: left !important; white-space: pre;
  border-bottom: 1px solid rgba(128, 128, 128, 0.35); background: transparent; color: inherit; }
.quillon td.number, .quillon th.number, .quillon [style*="right"] { text-align: right !important; font-variant-numeric: tabular-nums; }
.quillon details > *:not(summary) { margin-left: 1.2em; }
.quillon summary { cursor: pointer; }
.quillon .faint { opacity: 0.65; }
</style>"""


def width_of_terminal() -> int:
    """How many places a line has; 0 where nothing limits them."""
    return shutil.get_terminal_size().columns if sys.stdout and sys.stdout.isatty() else 0


def _fitted(lines: list[str]) -> str:
    """The lines, cut to what a terminal shows."""
    width = shutil.get_terminal_size().columns
    shown = [line if len(line) <= width else line[: width - 1] + "…" for line in lines]
    if len(shown) > _MOST_LINES:
        left = len(shown) - _MOST_LINES
        shown = [*shown[:_MOST_LINES], f"... and {left} more lines"]
    return "\n".join(shown)


def _preview(array: Array) -> str:
    """The values, as far as they are in memory."""
    source = array._handle.source
    if source is None:
        return ""
    with np.printoptions(threshold=20, edgeitems=3):
        return str(source)


def array_text(array: Array) -> str:
    """An array's outline, and its values where they need not be read."""
    outline = array._handle.describe().rstrip("\n")
    return _fitted([f"<quillon.Array>  {outline}", *_preview(array).splitlines()])


def dictionary_text(dictionary: Dictionary) -> str:
    """The outline of a dictionary."""
    return _fitted(dictionary._handle.describe().rstrip("\n").split("\n"))


def _page(content: str) -> str:
    return f'{_STYLE}<div class="quillon">{content}</div>'


def _row(cells: list[tuple[Any, bool]], element: str = "td") -> str:
    row = ""
    for cell, is_number in cells:
        mark = ' class="number"' if is_number else ""
        row += f"<{element}{mark}>{_core.in_html(str(cell))}</{element}>"
    return f"<tr>{row}</tr>"


def _table(head: list[tuple[str, bool]], rows: list[list[Any]]) -> str:
    numbers = [is_number for _, is_number in head]
    body = "".join(_row(list(zip(row, numbers))) for row in rows)
    return f"<table><thead>{_row(head, 'th')}</thead><tbody>{body}</tbody></table>"


def _counted(count: int, one: str, more: str) -> str:
    return f"{count} {one if count == 1 else more}"


def _extents(array: Array) -> str:
    return ", ".join(f"{dim}: {size}" for dim, size in zip(array.dims, array.shape))


def _facts(name: str, array: Array) -> list[Any]:
    return [name, _extents(array), array.element_type, array.unit, array.description]


_FACTS = [("", False), ("dimensions", False), ("type", False), ("unit", False), ("", False)]


def array_html(array: Array) -> str:
    """An array for a notebook: what it is, its values and its attributes to unfold."""
    content = _table(_FACTS, [_facts(array.name, array)])
    preview = _preview(array)
    if preview:
        lines = "\n".join(map(_core.in_html, preview.splitlines()))
        content += f"<details><summary>values</summary><pre>{lines}</pre></details>"
    return _page(content + _attributes(array))


def _attributes(owner: Any) -> str:
    if not owner.attrs:
        return ""
    table = _table([("attribute", False), ("value", False)], [[k, v] for k, v in owner.attrs.items()])
    return f"<details><summary>{_counted(len(owner.attrs), 'attribute', 'attributes')}</summary>{table}</details>"


def _group(dictionary: Dictionary) -> str:
    from quillon._array import Array

    arrays, groups = [], ""
    for name, entry in dictionary.items():
        if isinstance(entry, Array):
            arrays.append(_facts(name, entry))
        else:
            count = _counted(len(entry), "entry", "entries")
            title = f"{_core.in_html(name)} <span class='faint'>{count}</span>"
            groups += f"<details><summary>{title}</summary>{_group(entry)}</details>"
    return (_table(_FACTS, arrays) if arrays else "") + _attributes(dictionary) + groups


def dictionary_html(dictionary: Dictionary) -> str:
    """A dictionary for a notebook: its arrays, and those below it to unfold."""
    path = getattr(dictionary, "path", "")
    title = _core.in_html(path or dictionary.description or dictionary.name or "Dictionary")
    return _page(f"<details open><summary>{title}</summary>{_group(dictionary)}</details>")


def table_html(table: Table) -> str:
    """The first rows of a table for a notebook."""
    rows, columns = table.shape
    shape = f"<p class='faint'>{rows} rows × {columns} columns</p>"
    notes = "".join(f"<p class='faint'>{_core.in_html(note)}</p>" for note in table.notes)
    return _page(table.to_html(10) + shape + notes)


_ROWS = [
    ("path", False),
    ("reason", False),
    ("values", True),
    ("largest delta", True),
    ("where", False),
    ("first", True),
    ("second", True),
]


def _differing(row: Any) -> list[Any]:
    where = ", ".join(f"{dim}={index}" for dim, index in row.where.items())
    count = f"{row.count} of {row.size}" if row.size else ""
    largest = "" if np.isnan(row.largest) else f"{row.largest:.6g}"
    sides = ("" if side is None else side for side in (row.first, row.second))
    return [row.path, row.reason, count, largest, where, *sides]


def report_html(report: Report) -> str:
    """A report for a notebook: a row for each difference."""
    if report.same:
        return _page(f"<p>{_core.in_html(str(report))}</p>")
    rows = [_differing(row) for row in report.rows[:_MOST_LINES]]
    rows += [[path, "not compared", "", "", why, "", ""] for path, why in report.not_compared]
    head = f"{_counted(len(report.rows), 'difference', 'differences')} in {report.values} values"
    return _page(f"<details open><summary>{head}</summary>{_table(_ROWS, rows)}</details>")
