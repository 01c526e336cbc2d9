"""Comparison: rules, figures, sides without names, and what reports are."""

import json
import math
import pickle

import numpy as np
import pytest
import quillon
from hypothesis import given
from hypothesis import strategies as st
from hypothesis.extra import numpy as hnp


def test_the_same_is_true_and_has_no_lines():
    report = quillon.compare({"a": [1.0, math.nan]}, {"a": [1.0, math.nan]})
    assert report
    assert (report.same, report.values, report.message, report.rows, report.not_compared) == (True, 2, "", [], [])
    assert report.lines() == []
    assert str(report) == repr(report) == "the same: 2 values"


def test_a_difference_has_figures_and_a_line():
    report = quillon.compare([[1.0, 2.0], [3.0, math.nan]], [[1.0, 2.5], [1.0, 4.0]])
    line = "/: 3 of 4 values differ, 1 missing in one file alone; the largest delta is 2 at dim_0=1, dim_1=0: 3 and 1"
    assert not report
    assert report.lines() == [line]
    assert report.message == line
    row = report.rows[0]
    assert row == quillon.Difference("/", "values", 3, 4, 2.0, {"dim_0": 1, "dim_1": 0}, 3.0, 1.0, 2.0, 1.25, 1)


REASONS = [
    ({"a": [1]}, {"a": {"b": [1]}}, ["kind"]),
    ({"a": [1]}, {"a": [1, 2]}, ["shape"]),
    ({"a": quillon.Array([1], ["x"])}, {"a": quillon.Array([1], ["y"])}, ["dimensions"]),
    ({"a": [1]}, {"a": [1.0]}, ["element type"]),
    ({"a": quillon.Array([1], unit="m")}, {"a": quillon.Array([1], unit="km")}, ["unit"]),
    ({"a": [1]}, {"b": [1]}, ["only in the first", "only in the second"]),
    (quillon.Array([1], ["x"], unit="m"), quillon.Array([2], ["y"], unit="k"), ["dimensions", "unit", "values"]),
]


@pytest.mark.parametrize("first, second, reasons", REASONS, ids=lambda v: None)
def test_names_every_reason(first, second, reasons):
    assert [row.reason for row in quillon.compare(first, second).rows] == reasons


def test_sizes_of_one_kind_are_compared_as_numbers():
    assert quillon.compare(np.float32([1.5]), np.float64([1.5])).same
    assert quillon.compare(np.int8([1]), np.int64([1])).same


def test_a_float_prints_as_one():
    report = quillon.compare(np.float32([0.1]), np.float32([0.2]))
    assert report.lines()[0].endswith(": 0.1 and 0.2")
    assert (report.rows[0].first, type(report.rows[0].first)) == (np.float32(0.1), np.float32)


def test_attributes_are_compared_where_asked():
    one = quillon.Dictionary({"a": quillon.Array([1], attrs={"b": 1})}, attrs={"c": "x"})
    other = quillon.Dictionary({"a": quillon.Array([1], attrs={"b": 2})})
    assert quillon.compare(one, other).same
    rows = quillon.compare(one, other, attrs=True).rows
    assert [(row.path, row.reason, row.first, row.second) for row in rows] == [
        ("/@c", "attribute", "x", None),
        ("/a@b", "attribute", "1", "2"),
    ]
    assert quillon.compare(one, other, attrs=True, ignore=["/a@b", "/@c"]).same


def test_patterns_choose_tolerances_and_what_is_left_out():
    one, other = {"a": {"x": [1.0]}, "b": [1.0]}, {"a": {"x": [1.5]}, "b": [1.5]}
    paths = lambda **options: [row.path for row in quillon.compare(one, other, **options).rows]  # noqa: E731
    assert paths() == ["/a/x", "/b"]
    assert paths(tolerances={"*": {"atol": 1}, "/b": {"rtol": 0.1}}) == ["/b"]
    assert paths(tolerances={"*": {"atol": 0.25}}) == paths(tolerances={"*": {"rtol": 0.25}}) == ["/a/x", "/b"]
    assert paths(ignore=["a/*"]) == ["/b"]
    assert paths(ignore="/a") == ["/b"]


@pytest.mark.parametrize(
    "options", [{"atol": -1}, {"rtol": math.nan}, {"tolerances": {"a": {"atol": -1}}}, {"tolerances": {"a": {"tol": 1}}}, {"largest": -1}]
)
def test_refuses_tolerances_that_are_none(options):
    with pytest.raises(ValueError):
        quillon.compare({"a": [1]}, {"a": [1]}, **options)
    if "tolerances" not in options:
        with pytest.raises(ValueError):
            quillon.compare(np.zeros(1), np.zeros(1), **options)


@pytest.mark.parametrize(
    "options, sentence",
    [
        ({"atol": "1"}, "atol is a number, not '1'"),
        ({"rtol": None}, "rtol is a number, not None"),
        ({"largest": 2.0}, "largest is a whole number, not 2.0"),
        ({"ignore": [1]}, "each of ignore is a text, not 1"),
        ({"ignore": 1}, "ignore is a text or several, not 1"),
        ({"tolerances": ["a"]}, "tolerances is a mapping, not ['a']"),
        ({"tolerances": {"a": 1}}, "the tolerance of 'a' is a mapping, not 1"),
        ({"tolerances": {"a": {"atol": "1"}}}, "atol of 'a' is a number, not '1'"),
        ({"tolerances": {1: {"atol": 1}}}, "a pattern of tolerances is a text, not 1"),
    ],
)
def test_says_which_option_is_of_another_type(options, sentence):
    for sides in (({"a": [1]}, {"a": [1]}), (np.zeros(1), np.zeros(1))):
        with pytest.raises(TypeError) as error:
            quillon.compare(*sides, **options)
        assert str(error.value) == sentence


def test_a_tolerance_is_a_float64():
    with pytest.raises(ValueError, match="atol is too large"):
        quillon.compare([1], [1], atol=10**400)
    for atol in (1, True, np.float32(1), np.array(1)):
        assert quillon.compare([1], [2], atol=atol).same


def test_a_row_has_its_largest_delta_however_many_are_listed():
    one, other = [1.0, 2.0, 3.0], [1.0, 2.5, 4.0]
    for sides in ((one, other), (np.array(one), np.array(other))):
        report = quillon.compare(*sides, largest=0)
        assert (report.rows[0].largest, report.rows[0].where) == (1, {"dim_0": 2})
        assert report.lines() == quillon.compare(*sides).lines()
        assert len(quillon.compare(*sides, largest=10**30).lines()) == 3


def test_names_what_is_no_tolerance():
    with pytest.raises(ValueError, match="^the tolerance of 'a' has 'tol', not 'atol' or 'rtol'$"):
        quillon.compare({"a": [1]}, {"a": [1]}, tolerances={"a": {"atol": 1, "tol": 1}})


def test_a_side_without_names_takes_those_of_the_other():
    array = quillon.Array([[1, 2]], ["time", "x"], unit="K", physical_unit="mK")
    for nameless in ([[1, 2]], np.array([[1, 2]])):
        assert quillon.compare(array, nameless).same
        assert quillon.compare(nameless, array).same
        assert quillon.compare({"a": {"b": array}}, {"a": {"b": nameless}}).same
        assert quillon.compare(quillon.Dictionary({"a": array}), {"a": nameless}).same


def test_every_rule_holds_for_arrays_of_numpy():
    one, other = np.array([1.0]), np.array([1.5])
    assert not quillon.compare(one, other)
    assert quillon.compare(one, other, tolerances={"/": {"atol": 0.5}})
    assert quillon.compare([1.0, 2.0], [2.0, 4.0], largest=2).lines() == quillon.compare(
        np.array([1.0, 2.0]), np.array([2.0, 4.0]), largest=2
    ).lines()


def test_arrays_of_numpy_lie_as_they_like():
    records = np.zeros(2, np.dtype([("flag", "i1"), ("value", "f8")]))
    plain = np.zeros(2)
    for other in (records["value"], plain.astype(">f8"), plain.astype("f2"), plain[::-1]):
        assert quillon.compare(plain, other)
        assert quillon.compare(other, plain)
        assert quillon.compare(other, other)
    masked = np.ma.masked_equal([1.0, 2.0], 2)
    for sides in ((masked, masked), (masked, plain), (plain, masked)):
        with pytest.raises(ValueError, match="masked"):
            quillon.compare(*sides)


def test_names_of_the_roots_do_not_count():
    assert quillon.compare(quillon.Array([1], name="a"), quillon.Array([1], name="b")).same
    assert quillon.compare(quillon.Dictionary(name="a"), quillon.Dictionary(name="b")).same


def test_lists_as_many_of_the_largest_as_asked():
    report = quillon.compare([1.0, 2.0, 3.0], [1.5, 4.0, 3.0], largest=2)
    assert report.lines()[1:] == ["  2 at dim_0=1: 2 and 4", "  0.5 at dim_0=0: 1 and 1.5"]


def test_shows_no_more_lines_than_fit():
    one = {f"a{k}": [1] for k in range(30)}
    report = quillon.compare(one, {})
    assert len(report.lines()) == 30
    assert str(report).splitlines()[20:] == ["... and 10 more"]


@pytest.mark.parametrize("values", [(1, 2), (1.5, 2.5), ("a", "b"), (True, False), (1j, 2j)])
@pytest.mark.parametrize("dtype", [None, "f4", "c8", "u8"])
def test_reports_pickle(values, dtype):
    if dtype is not None and not isinstance(values[0], (int, float)):
        pytest.skip("for numbers")
    arrays = [np.array([v, v], dtype) for v in values]
    first, second = quillon.Dictionary({"x": arrays[0], "y": [1]}, name="one"), quillon.Dictionary({"x": arrays[1]}, name="other")
    report = quillon.compare(first, second, atol=0.25, largest=3, equal_nan=False)
    assert (first.name, second.name) == tuple(json.loads(report.to_json())[side] for side in ("first", "second"))
    again = pickle.loads(pickle.dumps(report))
    assert str(again) == str(report)
    assert str(again.rows) == str(report.rows)
    assert again.to_json() == report.to_json()


def test_gives_json():
    report = json.loads(quillon.compare(quillon.Array([1.0], name="one"), [2.0], rtol=0.125).to_json())
    assert report["first"] == "one"
    assert report["rule"] == {"absolute": 0, "relative": 0.125, "nan_equal": True}
    assert report["differences"][0]["largest"][0]["delta"] == 1


def test_gives_a_frame():
    for second, paths in ([2], ["/a"]), ([1], []):
        frame = quillon.compare({"a": [1]}, {"a": second}).differences
        assert list(frame.columns) == list(quillon.Difference._fields)
        assert frame["path"].tolist() == paths


def test_shows_markup_of_its_own():
    page = quillon.compare({"<b>": ["<i>"]}, {"<b>": ["<u>"]})._repr_html_()
    assert "<td>/&lt;b&gt;</td>" in page
    assert "<i>" not in page
    assert "the same: 1 values" in quillon.compare([1], [1])._repr_html_()


def test_elements_that_are_mappings_are_entries():
    report = quillon.compare([{"a": 1}, {"a": 2}], [{"a": 1}, {"a": 3}])
    assert [row.path for row in report.rows] == ["/[1]/a"]


@pytest.mark.parametrize("kind", ["M8[s]", "m8[s]"])
def test_times_that_are_missing_are_no_numbers(kind):
    one, other = (np.array(v, kind) for v in ([5, "NaT", "NaT", 7], [5, "NaT", 6, 9]))
    report = quillon.compare(one, other, atol=1)
    assert report.rows[0][2:8] == (2, 4, 2.0, {"dim_0": 3}, 7, 9)
    assert report.rows[0].missing == 1
    assert quillon.compare(one, other, atol=2).rows[0].first is None
    assert quillon.compare(one, one).same
    assert quillon.compare(one, one, equal_nan=False).rows[0].count == 2


@pytest.mark.parametrize("kind", ["M8", "m8"])
def test_times_in_other_units_are_not_compared_as_numbers(kind):
    one, other = (np.array([1], f"{kind}[{unit}]") for unit in ("s", "ns"))
    assert [row.reason for row in quillon.compare(one, other).rows][0] == "unit"


# A slow comparison of values, as the rule has it.
def oracle(a, b, atol, rtol, equal_nan):
    differing, deltas = [], []
    for k, (x, y) in enumerate(zip(a.ravel().tolist(), b.ravel().tolist())):
        if x == y:
            continue
        isnan = [v != v for v in (x, y)]
        if all(isnan) and equal_nan:
            continue
        finite = all(map(np.isfinite, (x, y)))
        if finite and abs(x - y) <= atol + rtol * abs(y):
            continue
        differing.append(k)
        if not any(isnan):
            deltas.append((abs(x - y), -k))
    largest = max(deltas, default=(math.nan, 0))
    return len(differing), largest[0], -largest[1]


NUMBERS = st.sampled_from([0.0, 1.0, 1.5, -2.0, 1e300, math.inf, -math.inf, math.nan])
ARRAYS = hnp.array_shapes(max_dims=3, max_side=4).flatmap(
    lambda shape: st.tuples(*[hnp.arrays("f8", shape, elements=NUMBERS)] * 2)
)
TOLERANCES = st.sampled_from([0.0, 0.5, 1.0])


@given(ARRAYS, TOLERANCES, TOLERANCES, st.booleans())
def test_agrees_with_a_slow_comparison(arrays, atol, rtol, equal_nan):
    a, b = arrays
    options = {"atol": atol, "rtol": rtol, "equal_nan": equal_nan}
    count, largest, at = oracle(a, b, **options)
    for first, second in (arrays, (quillon.Array(a.T), quillon.Array(b.T))):
        report = quillon.compare(first, second, **options)
        assert report.same == (count == 0)
        assert report.values == a.size
        if count:
            assert report.rows[0].count == count
            np.testing.assert_equal(report.rows[0].largest, largest)
    report = quillon.compare(a, b, **options)
    if count and not math.isnan(largest):
        where = tuple(report.rows[0].where.values())
        assert np.ravel_multi_index(where, a.shape) == at
