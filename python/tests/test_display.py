"""How objects look: whole lines of a terminal, and whole parts of a notebook's page."""

import sys

import numpy as np
import quillon


def page(thing):
    """What stands behind the style."""
    return thing._repr_html_().partition("</style>")[2]


def block(*content):
    return f'<div class="quillon">{"".join(content)}</div>'


def row(cells, mark, numbers):
    """A row of a table, whose cells of these numbers are numbers."""
    starts = [f"<{mark}>", f'<{mark} class="number">']
    return f"<tr>{''.join(f'{starts[k in numbers]}{cell}</{mark}>' for k, cell in enumerate(cells))}</tr>"


def table(head, *rows, numbers=()):
    body = "".join(row(cells, "td", numbers) for cells in rows)
    return f"<table><thead>{row(head, 'th', numbers)}</thead><tbody>{body}</tbody></table>"


def folded(title, *content, opened=""):
    return f"<details{opened}><summary>{title}</summary>{''.join(content)}</details>"


FACTS = ("", "dimensions", "type", "unit", "")
ODD = quillon.Array(["<b>", "c"], ["x"], name="<n>", unit="<u>", description="<d>", attrs={"<k>": "<v>"})
ATTRIBUTE = folded("1 attribute", table(("attribute", "value"), ("&lt;k&gt;", "&lt;v&gt;")))


def test_an_array_shows_outline_values_and_attributes():
    assert page(ODD) == block(
        table(FACTS, ("&lt;n&gt;", "x: 2", "String", "&lt;u&gt;", "&lt;d&gt;")),
        folded("values", "<pre>[&#39;&lt;b&gt;&#39; &#39;c&#39;]</pre>"),
        ATTRIBUTE,
    )


def test_values_of_several_rows_stand_below_each_other():
    array = quillon.Array([[1, 2], [3, 4]])
    assert "<pre>[[1 2]\n [3 4]]</pre>" in array._repr_html_()
    assert repr(array).splitlines()[1:] == ["[[1 2]", " [3 4]]"]


def test_values_that_have_to_be_read_are_not_shown():
    lazy = quillon.Array.lazy(lambda start, stop: 1 / 0, [2], ["x"], name="a", unit="m")
    assert page(lazy) == block(table(FACTS, ("a", "x: 2", "Double", "m", "")))
    assert repr(lazy) == "<quillon.Array>  a  Double  x=2  m"


def test_axes_of_known_names_are_of_their_kinds(monkeypatch):
    monkeypatch.setenv("COLUMNS", "200")
    array = quillon.Array(np.zeros((1, 0, 1, 1, 1)), ["slice", "time", "channel", "label", "x"], name="a")
    axes = "x=1 label=1 (label) channel=1 (channel) time=0 (time) slice=1 (slice)"
    assert repr(array).splitlines()[0] == f"<quillon.Array>  a  Double  {axes}"


def test_of_many_values_the_first_and_last_are_shown():
    assert repr(quillon.Array(np.arange(100), ["x"], name="a")) == (
        "<quillon.Array>  a  Int  x=100\n[ 0  1  2 ... 97 98 99]"
    )


def test_a_line_that_just_fits_is_whole(monkeypatch):
    array = quillon.Array(np.zeros(0), ["x"], name="name")
    whole = repr(array).splitlines()[0]
    monkeypatch.setenv("COLUMNS", str(len(whole)))
    assert repr(array).splitlines()[0] == whole
    monkeypatch.setenv("COLUMNS", str(len(whole) - 1))
    assert repr(array).splitlines()[0] == whole[:-2] + "…"


def test_a_dictionary_shows_its_arrays_attributes_and_what_is_in_it():
    inner = quillon.Dictionary({"one": [1]}, attrs={"a": 1, "b": 2})
    cells = quillon.Dictionary({"<g>": inner, "a": ODD, "none": {}}, name="n", description="<t>", attrs={"<k>": "<v>"})
    attributes = folded("2 attributes", table(("attribute", "value"), ("a", "1"), ("b", "2")))
    assert page(cells) == block(
        folded(
            "&lt;t&gt;",
            table(FACTS, ("a", "x: 2", "String", "&lt;u&gt;", "&lt;d&gt;")),
            ATTRIBUTE,
            folded(
                "&lt;g&gt; <span class='faint'>1 entry</span>",
                table(FACTS, ("one", "dim_0: 1", "Int", "", "")),
                attributes,
            ),
            folded("none <span class='faint'>0 entries</span>"),
            opened=" open",
        )
    )


def test_a_dictionary_without_a_description_is_called_by_its_name():
    for dictionary, title in ((quillon.Dictionary(name="<n>"), "&lt;n&gt;"), (quillon.Dictionary(), "Dictionary")):
        assert f"<summary>{title}</summary>" in page(dictionary)


def test_a_table_says_what_is_not_in_it():
    entries = {"x": quillon.Array([1], ["x"]), "<z>": quillon.Array(1j)}
    table = quillon.Dictionary(entries).to_table()
    assert page(table) == block(
        table.to_html(),
        "<p class='faint'>1 rows × 1 columns</p>",
        "<p class='faint'>&#39;&lt;z&gt;&#39; is not in the table: it holds complex numbers</p>",
    )


def test_a_table_fits_a_terminal_and_is_whole_elsewhere(monkeypatch):
    long = quillon.Dictionary({"name": quillon.Array(["long " * 20], ["x"])}).to_table()
    monkeypatch.setenv("COLUMNS", "40")
    assert max(map(len, str(long).splitlines())) > 100
    monkeypatch.setattr(sys.stdout, "isatty", lambda: True, raising=False)
    assert max(map(len, str(long).splitlines())) <= 40


HEAD = ("path", "reason", "values", "largest delta", "where", "first", "second")
NUMBERS = (2, 3, 5, 6)


def report_page(title, *rows):
    return block(folded(title, table(HEAD, *rows, numbers=NUMBERS), opened=" open"))


def test_a_report_has_a_row_for_each_difference():
    one = {"<a>": [1.0, 0.0], "b": ["<x>"], "c": [1]}
    other = {"<a>": [1.0, 1 / 3], "b": ["<y>"], "d": {}}
    assert page(quillon.compare(one, other)) == report_page(
        "4 differences in 3 values",
        ("/&lt;a&gt;", "values", "1 of 2", "0.333333", "dim_0=1", "0.0", "0.3333333333333333"),
        ("/b", "values", "1 of 1", "", "dim_0=0", "&lt;x&gt;", "&lt;y&gt;"),
        ("/c", "only in the first", "", "", "", "array", ""),
        ("/d", "only in the second", "", "", "", "", "dictionary"),
    )
    assert page(quillon.compare([1], [2])) == report_page(
        "1 difference in 1 values", ("/", "values", "1 of 1", "1", "dim_0=0", "1", "2")
    )


def test_a_report_has_a_row_for_what_was_not_compared(tmp_path):
    quillon.save({"v": [1]}, tmp_path / "a.nc")
    with quillon.open(tmp_path / "a.nc") as file:
        pass
    assert page(quillon.compare(file, file)) == report_page(
        "0 differences in 0 values",
        ("/v", "not compared", "", "", f"Cannot read &#39;{tmp_path}/a.nc&#39;: the file is closed", "", ""),
    )
