"""Arrays: what they are made of, what they say, what comes back."""

import copy
import pickle
import types

import numpy as np
import pytest
import quillon
from hypothesis import given
from hypothesis import strategies as st
from hypothesis.extra import numpy as hnp

VIEWED = ["i1", "i2", "i4", "i8", "u1", "u2", "u4", "u8", "f4", "f8", "c8", "c16", "?"]
TICKS = ["M8[ns]", "M8[us]", "M8[s]", "M8[D]", "M8[M]", "M8[Y]", "M8[25s]", "m8[ns]", "m8[h]"]
ELEMENT = {"i": "Int", "u": "UInt", "f": "Double", "c": "Complex", "b": "Boolean", "M": "Int", "m": "Int"}


def some_values(dtype, shape=(2, 3)):
    return np.arange(np.prod(shape)).reshape(shape).astype(dtype)


@pytest.mark.parametrize("dtype", VIEWED + TICKS)
def test_views_values_of_any_dtype_in_place(dtype):
    values = some_values(dtype)
    array = quillon.Array(values)
    assert array.values is values
    assert array.dtype == values.dtype
    assert array.element_type == ELEMENT[values.dtype.kind]
    values[0, 0] = values[1, 2]
    assert quillon.compare(array, values).same


@pytest.mark.parametrize("dtype", VIEWED + TICKS)
@pytest.mark.parametrize(
    "view",
    [
        lambda v: v.T,
        lambda v: v[::-1, ::2],
        lambda v: np.broadcast_to(v[0], v.shape),
        lambda v: np.asfortranarray(v),
        lambda v: v[1:, :0],
        lambda v: v[1, 2],
    ],
    ids=["transposed", "backwards", "repeated", "columns", "empty", "single"],
)
def test_reads_what_numpy_reads_whatever_the_strides(dtype, view):
    values = np.asarray(view(some_values(dtype)))
    array = quillon.Array(values)
    assert array.shape == values.shape
    read = array._handle.read([0] * values.ndim, values.shape)
    assert read.dtype == values.dtype
    np.testing.assert_array_equal(read, values)
    assert quillon.compare(array, values.copy()).values == values.size


@pytest.mark.parametrize("dtype", ["f2", ">i4", ">f8", "<U3", "S3", ">M8[s]"])
def test_copies_what_the_libraries_cannot_view(dtype):
    values = some_values("i8").astype(dtype)
    array = quillon.Array(values)
    expected = array.values.copy()
    values[...] = values[1, 1]
    np.testing.assert_array_equal(array.values, expected)


def test_copies_values_that_are_not_aligned():
    records = np.zeros(3, np.dtype([("flag", "i1"), ("value", "f8")]))
    records["value"] = [1.5, 2.5, 3.5]
    array = quillon.Array(records["value"])
    assert not records["value"].flags.aligned
    assert quillon.compare(array, [1.5, 2.5, 3.5]).same


@pytest.mark.parametrize(
    "values, expected",
    [
        (["a", "βb"], "String"),
        (np.array(["a", "b"], object), "String"),
        (np.array([b"a", b"b"]), "String"),
        ([{"a": 1}, {"a": 2}], "Dictionary"),
    ],
)
def test_takes_texts_and_mappings(values, expected):
    array = quillon.Array(values)
    assert array.element_type == expected
    assert array.shape == (2,)


def test_mappings_of_any_class_are_elements():
    cell = quillon.Dictionary({"a": 1, "b": 2}, name="cell", attrs={"by": "me"})
    view = types.MappingProxyType({"a": 3})
    for values, shape in ((cell, ()), ([cell, view], (2,)), ([(view, {}), (cell, cell)], (2, 2))):
        array = quillon.Array(values)
        assert (array.element_type, array.shape) == ("Dictionary", shape)
    assert quillon.Array([view, cell]).values[1] is cell
    assert quillon.Array([cell, view]).values[1]["a"].values == 3
    with pytest.raises(TypeError, match="'text'"):
        quillon.Array([cell, "text"])


def test_texts_have_the_dtype_that_numpy_gave_them():
    assert quillon.Array(["a", "bcd"]).dtype == "<U3"
    assert quillon.Array(np.array(["a"], object)).dtype == object


@pytest.mark.parametrize(
    "values, dtype",
    [
        (np.zeros(2, "f16"), "float128"),
        (np.zeros(2, [("a", "i4")]), "a"),
        (np.array([object()], object), "object"),
        (np.array(["a", None], object), "object"),
        (np.array(["NaT"], "M8"), "datetime64"),
    ],
)
def test_refuses_other_dtypes_by_name(values, dtype):
    with pytest.raises(TypeError, match=dtype):
        quillon.Array(values)


def test_refuses_values_that_are_masked():
    with pytest.raises(ValueError, match="masked"):
        quillon.Array(np.ma.masked_invalid([1.0, np.nan]))
    assert quillon.Array(np.ma.masked_invalid([1.0, 2.0])).values.tolist() == [1, 2]


def test_says_what_it_is():
    array = quillon.Array(
        [[1.0, 2.0]],
        ["time", "x"],
        name="t",
        unit="K",
        physical_unit="mK",
        description="Temperature",
        attrs={"standard_name": "air_temperature", "valid_range": [0.0, 9.0], "one": np.int16(4)},
    )
    assert (array.name, array.dims, array.shape, array.ndim, array.size) == ("t", ("time", "x"), (1, 2), 2, 2)
    assert (array.unit, array.physical_unit, array.description) == ("K", "mK", "Temperature")
    assert array.attrs["standard_name"] == "air_temperature"
    assert array.attrs["valid_range"].tolist() == [0.0, 9.0]
    assert (array.attrs["one"], array.attrs["one"].dtype) == (4, np.int16)
    assert len(array) == 1
    assert repr(array).splitlines()[1:] == ["[[1. 2.]]"]


def test_has_plain_remarks_by_default():
    array = quillon.Array(np.zeros((1, 2)))
    assert (array.name, array.dims, array.unit, array.physical_unit) == ("", ("dim_0", "dim_1"), "", "")
    assert (array.description, dict(array.attrs)) == ("", {})


def test_is_read_only():
    array = quillon.Array([1])
    for name in ("name", "dims", "shape", "unit", "attrs", "values"):
        with pytest.raises(AttributeError):
            setattr(array, name, "x")
    with pytest.raises(TypeError):
        array.attrs["a"] = 1


@pytest.mark.parametrize("dims", [[], ["x"], ["x", "y", "z"], "x"])
def test_refuses_a_wrong_number_of_names(dims):
    with pytest.raises(ValueError, match="2 dimensions"):
        quillon.Array([[1]], dims)


@pytest.mark.parametrize("value", [1j, None, {"a": 1}, [[1], [2]], [1, "a", None]])
def test_refuses_attributes_that_no_object_can_have(value):
    with pytest.raises(TypeError, match="'odd'"):
        quillon.Array([1], attrs={"odd": value})


def test_a_single_name_is_one_of_one_dimension():
    assert quillon.Array([1, 2], "time").dims == ("time",)
    assert quillon.Array.lazy(lambda a, b: np.zeros(b - a), [2], "time").dims == ("time",)


@pytest.mark.parametrize(
    "given, kept",
    [
        ("text", "text"),
        (np.str_("text"), "text"),
        (b"text", "text"),
        (["a"], ["a"]),
        (("a", "b"), ["a", "b"]),
        (np.array(["a"]), ["a"]),
        (True, np.int8(1)),
        ([True, False], np.int8([1, 0])),
        (2, 2),
        (2.5, 2.5),
        (np.float32(0.5), np.float32(0.5)),
        (np.array([1, 2], ">i4"), np.int32([1, 2])),
        ([], np.zeros(0)),
    ],
    ids=repr,
)
def test_attributes_are_texts_numbers_and_lists_of_these(given, kept):
    found = quillon.Array([1], attrs={"a": given}).attrs["a"]
    assert type(found) is type(kept)
    assert np.asarray(found).dtype == np.asarray(kept).dtype
    np.testing.assert_array_equal(found, kept)


def test_nobody_changes_texts():
    for texts in (["a", "b"], np.array(["a", "b"], object)):
        with pytest.raises(ValueError, match="read-only"):
            quillon.Array(texts).values[0] = "c"


def test_gives_arrays_to_numpy():
    values = np.arange(3.0)
    array = quillon.Array(values)
    assert np.asarray(array) is values
    assert np.array(array) is not values
    assert np.asarray(array, "f4").dtype == np.float32
    assert array.__array__(copy=False) is values
    assert array.__array__(copy=True) is not values
    with pytest.raises(ValueError, match="uncopied"):
        array.__array__("f4", copy=False)
    assert np.sum(array) == 3


def read_array(values):
    """The same values, to be read in blocks."""
    return quillon.Array.lazy(lambda a, b: values[a:b], values.shape, dtype=values.dtype, window=16)


KEYS = [
    0, -1, slice(None), slice(1, 3), slice(None, None, -1), slice(3, 0, -2), slice(5, 9), ...,
    (0, 1), (slice(None), 2), (..., -1), (slice(1, 2), slice(0, 3, 2)), None, (0, None),
    [0, 2], np.array([True, False, True, False]), (slice(None), [0, 1]), (), True, np.False_,
]  # fmt: skip


@pytest.mark.parametrize("key", KEYS, ids=str)
def test_gives_parts_as_numpy_does(key):
    values = np.arange(12).reshape(4, 3)
    for array in (quillon.Array(values), read_array(values)):
        np.testing.assert_array_equal(array[key], values[key])
        assert np.shape(array[key]) == values[key].shape


@pytest.mark.parametrize("key", [4, -5, (0, 3), (0, 0, 0)])
def test_refuses_positions_outside(key):
    values = np.arange(12).reshape(4, 3)
    for array in (quillon.Array(values), read_array(values)):
        with pytest.raises(IndexError):
            array[key]


def test_has_a_length_along_its_first_dimension():
    assert [list(row) for row in quillon.Array([[1, 2], [3, 4]])] == [[1, 2], [3, 4]]
    with pytest.raises(TypeError, match="without dimensions"):
        len(quillon.Array(1))


@pytest.mark.parametrize("again", [copy.copy, copy.deepcopy, lambda a: pickle.loads(pickle.dumps(a))])
@pytest.mark.parametrize("values", [[1.5, 2.5], ["a", "b"], np.array(["2011-08-01", "NaT"], "M8[s]"), [{"a": 1}, {}]])
def test_copies_are_the_same(again, values):
    array = quillon.Array(
        values, ["time"], name="a", unit="K", physical_unit="mK", description="d", attrs={"b": 1}
    )
    other = again(array)
    assert quillon.compare(array, other, attrs=True).same
    assert (other.name, other.unit, other.physical_unit) == ("a", "K", "mK")
    assert other.dtype == array.dtype


def test_deep_copies_have_values_of_their_own():
    values = np.arange(3)
    array = quillon.Array(values)
    plain, deep = copy.copy(array), copy.deepcopy(array)
    values[0] = 9
    assert plain.values is values
    assert deep.values.tolist() == [0, 1, 2]


@given(hnp.arrays(hnp.scalar_dtypes(), hnp.array_shapes(min_dims=0, max_dims=4, min_side=0)), st.data())
def test_holds_what_numpy_holds(values, data):
    try:
        array = quillon.Array(values)
    except TypeError as error:
        assert str(values.dtype) in str(error)
        return
    np.testing.assert_array_equal(array.values, values)
    np.testing.assert_array_equal(quillon.Array(values.T).values, values.T)
    key = data.draw(hnp.basic_indices(values.shape))
    np.testing.assert_array_equal(array[key], values[key])


@pytest.mark.parametrize("name", ["name", "unit", "physical_unit", "description"])
def test_says_which_remark_is_no_text(name):
    with pytest.raises(TypeError, match=f"^{name} is a text, not 3$"):
        quillon.Array([1], **{name: 3})
    with pytest.raises(TypeError, match=f"^{name} is a text, not 3$"):
        quillon.Array.lazy(np.arange, [1], **{name: 3})


def test_says_what_attributes_are_called_by():
    with pytest.raises(TypeError, match="^attributes are called by texts, not by 1$"):
        quillon.Array([1], attrs={1: 2})
    with pytest.raises(TypeError, match=r"^attrs is a mapping, not \[1\]$"):
        quillon.Array([1], attrs=[1])
