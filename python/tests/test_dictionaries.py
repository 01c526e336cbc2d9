"""Dictionaries: entries along paths, what is shared, what outlives what."""

import copy
import gc
import pickle

import numpy as np
import pytest
import quillon


@pytest.fixture
def cells():
    return quillon.Dictionary(
        {"area": quillon.Array([1, 2], ["label"], unit="um2"), "otsu": {"li": {"area": [3.0]}}},
        name="cells",
        description="Some cells",
        attrs={"by": "me"},
    )


def test_is_a_mapping_in_its_order(cells):
    assert (list(cells), len(cells)) == (["area", "otsu"], 2)
    assert (cells.name, cells.description, dict(cells.attrs)) == ("cells", "Some cells", {"by": "me"})
    cells["area"] = [5]
    cells["new"] = 1
    assert list(cells) == ["area", "otsu", "new"]
    del cells["area"]
    assert list(cells) == ["otsu", "new"]
    assert cells.pop("new").values == 1
    assert cells.get("new") is None


def test_finds_entries_along_paths(cells):
    assert cells["otsu/li/area"].values.tolist() == [3.0]
    assert cells["/otsu"]["li/area"].name == "area"
    assert "otsu/li" in cells
    assert "otsu/none" not in cells
    assert 3 not in cells
    cells["otsu/li/b"] = [1]
    assert list(cells["otsu/li"]) == ["area", "b"]
    del cells["otsu/li/area"]
    assert list(cells["otsu/li"]) == ["b"]


@pytest.mark.parametrize("path", ["none", "area/none", "otsu/none", "otsu/none/x", "", "otsu/", "otsu//li", 3])
def test_says_which_entry_is_missing(cells, path):
    with pytest.raises(KeyError) as error:
        cells[path]
    assert str(path) in str(error.value)
    with pytest.raises(KeyError):
        del cells[path]


def test_offers_the_nearest_names(cells):
    sentences = {
        "there is no entry 'araa': the dictionary 'cells' has no 'araa'; the nearest are 'area', 'otsu'": cells,
        "there is no entry 'araa': the dictionary has no 'araa'; the nearest are 'a'": quillon.Dictionary({"a": [1]}),
        "there is no entry 'araa': the dictionary has no 'araa'": quillon.Dictionary(),
    }
    for sentence, dictionary in sentences.items():
        with pytest.raises(KeyError) as error:
            dictionary["araa"]
        assert error.value.args == (sentence,)


@pytest.mark.parametrize("path", ["none/x", "area/x", "otsu/none/x"])
def test_sets_only_in_what_is_there(cells, path):
    with pytest.raises(KeyError):
        cells[path] = [1]


@pytest.mark.parametrize("name, error", [("a/b", ValueError), ("", ValueError), (3, TypeError)])
def test_refuses_names_that_no_entry_can_have(name, error):
    with pytest.raises(error):
        quillon.Dictionary({name: [1]})
    if name != "a/b":  # which is a path
        with pytest.raises(error):
            quillon.Dictionary()[name] = [1]


def test_shares_values_and_not_outlines():
    values = np.arange(3)
    array = quillon.Array(values, name="mine")
    one = quillon.Dictionary({"a": array, "b": array})
    assert (array.name, one["a"].name, one["b"].name) == ("mine", "a", "b")
    assert one["a"].values is values
    inner = quillon.Dictionary({"x": [1]})
    one["inner"] = inner
    inner["y"] = [2]
    assert list(one["inner"]) == ["x"]
    one["inner"]["z"] = [3]
    assert list(one["inner"]) == ["x", "z"]


def test_may_be_put_into_itself(cells):
    cells["again"] = cells
    assert list(cells["again"]) == ["area", "otsu"]


def test_refuses_to_nest_without_end():
    nested = quillon.Dictionary()
    with pytest.raises(RecursionError, match="500 levels"):
        for _ in range(1000):
            nested = quillon.Dictionary({"d": nested})


def test_entries_outlive_the_dictionary(cells):
    array, inner = cells["area"], cells["otsu/li"]
    values = cells["area"].values
    del cells["area"]
    del cells
    gc.collect()
    assert array.values is values
    assert inner["area"].values.tolist() == [3.0]
    assert quillon.compare(array, [1, 2]).same


@pytest.mark.parametrize(
    "again", [copy.copy, copy.deepcopy, lambda d: d.copy(), lambda d: pickle.loads(pickle.dumps(d))]
)
def test_copies_are_the_same(cells, again):
    other = again(cells)
    assert quillon.compare(cells, other, attrs=True).same
    assert (other.name, dict(other.attrs)) == ("cells", {"by": "me"})
    del other["area"]
    assert "area" in cells


def test_deep_copies_have_values_of_their_own():
    values = np.arange(3)
    outer = quillon.Dictionary({"inner": {"a": values}})
    plain, deep = outer.copy(), copy.deepcopy(outer)
    values[0] = 9
    assert plain["inner/a"].values is values
    assert deep["inner/a"].values.tolist() == [0, 1, 2]


def test_shows_an_outline(cells):
    lines = repr(cells).splitlines()
    assert lines[0].startswith("/  1 array, 1 group  Some cells")
    assert "um2" in lines[1]
    assert "/otsu/li  1 array" in lines


def test_fits_a_terminal(monkeypatch):
    monkeypatch.setenv("COLUMNS", "40")
    many = quillon.Dictionary({f"entry_{k}": quillon.Array([1], description="long " * 20) for k in range(99)})
    lines = repr(many).splitlines()
    assert max(map(len, lines)) == 40
    assert lines[-1] == "... and 40 more lines"


def test_shows_markup_of_its_own(cells):
    cells["<b>"] = quillon.Array([1], unit="<i>", attrs={"<u>": "<s>"})
    page = cells._repr_html_()
    assert "<td>um2</td>" in page
    assert "<details>" in page
    for markup in ("<b>", "<i>", "<u>", "<s>"):
        assert markup not in page.replace("&lt;", "")


@pytest.mark.parametrize("entries", [[1], [("a", 1)], "ab", 3])
def test_says_what_entries_are(entries):
    with pytest.raises(TypeError) as error:
        quillon.Dictionary(entries)
    assert str(error.value) == f"entries is a mapping, not {entries!r}"
    with pytest.raises(TypeError, match="^name is a text, not 3$"):
        quillon.Dictionary(name=3)
