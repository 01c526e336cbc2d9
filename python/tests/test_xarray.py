"""Objects of xarray and pandas, as ours and back."""

import copy
import pickle

import numpy as np
import pandas
import pytest
import quillon
from hypothesis import given
from hypothesis import strategies as st

xarray = pytest.importorskip("xarray")


@pytest.fixture
def dataset():
    return xarray.Dataset(
        {
            "t": (("time", "x"), np.arange(6.0).reshape(2, 3), {"units": "K", "long_name": "Temperature", "k": [1, 2]}),
            "name": ("x", np.array(["a", "b", "c"], object)),
            "flag": ((), True),
        },
        {
            "time": np.array(["2011-08-01", "2011-08-02"], "M8[ns]"),
            "x": ("x", [1, 2, 3], {"units": "m"}),
            "lat": ("x", [0.5, 1.5, 2.5]),
            "run": 7,
        },
        {"title": "Some", "history": "made"},
    )


def test_a_dataset_comes_back_as_it_was(dataset):
    ours = quillon.from_xarray(dataset)
    assert (ours.description, dict(ours.attrs)) == ("Some", {"history": "made"})
    assert (ours["t"].unit, ours["t"].description) == ("K", "Temperature")
    assert ours["t"].values is not None
    xarray.testing.assert_identical(ours.to_xarray(), dataset)
    xarray.testing.assert_identical(ours.copy().to_xarray(), dataset)


def test_a_data_array_comes_back_as_it_was(dataset):
    for name in dataset.variables:
        theirs = dataset[name]
        theirs.coords.pop if False else None
        xarray.testing.assert_identical(quillon.from_xarray(theirs).to_xarray(), theirs)


@pytest.mark.parametrize("again", [copy.copy, copy.deepcopy, lambda o: pickle.loads(pickle.dumps(o))])
def test_copies_keep_coordinates(dataset, again):
    for theirs in (dataset, dataset["t"]):
        xarray.testing.assert_identical(again(quillon.from_xarray(theirs)).to_xarray(), theirs)


def test_a_dictionary_of_a_dictionary_keeps_coordinates(dataset):
    ours = quillon.Dictionary(quillon.from_xarray(dataset))
    xarray.testing.assert_equal(ours.to_xarray(), dataset)
    assert set(ours.to_xarray().coords) == {"time", "x", "lat", "run"}


def test_datasets_and_frames_are_entries(dataset):
    xarray.testing.assert_equal(quillon.Dictionary(dataset).to_xarray(), dataset)
    frame = pandas.DataFrame({"v": [1.5, 2.5]}, index=pandas.Index([3, 7], name="label"))
    assert list(quillon.Dictionary(frame, name="cells")) == ["label", "v"]


def test_an_entry_in_place_of_a_coordinate_is_none(dataset):
    ours = quillon.from_xarray(dataset)
    del ours["lat"]
    ours["lat"] = quillon.Array([1, 2, 3], ["x"])
    assert set(ours.to_xarray().coords) == {"time", "x", "run"}


def test_units_and_titles_that_are_no_text_stay_attributes():
    data = xarray.Dataset(
        {
            "number": ("x", [1.0], {"units": 1, "long_name": 2}),
            "empty": ("x", [1.0], {"units": "", "long_name": ""}),
            "time": ("x", np.array(["2011-08-01"], "M8[ns]"), {"units": "days"}),
        },
        attrs={"title": 3},
    )
    ours = quillon.from_xarray(data)
    assert [(array.unit, array.description) for array in ours.values()] == [("", "")] * 3
    assert ours.description == ""
    xarray.testing.assert_identical(ours.to_xarray(), data)


def test_another_name_may_be_given(dataset):
    assert quillon.from_xarray(dataset["t"]).name == "t"
    assert quillon.from_xarray(dataset["t"], name="other").name == "other"
    assert quillon.from_xarray(dataset, name="other").name == "other"
    assert quillon.from_xarray(xarray.DataArray([1])).name == ""
    assert quillon.from_xarray(xarray.DataArray([1])).to_xarray().name is None


def test_values_are_not_copied(dataset):
    assert quillon.from_xarray(dataset)["t"].values is dataset["t"].values


def test_data_of_dask_stay_lazy(dataset):
    dask = pytest.importorskip("dask.array")
    calls = []

    def block(values):
        calls.append(values.shape)
        return values

    lazy = dataset["t"].copy(data=dask.from_array(dataset["t"].values, chunks=(1, 3)).map_blocks(block, dtype="f8"))
    calls.clear()
    ours = quillon.from_xarray(lazy)
    assert calls == []
    assert quillon.compare(ours, dataset["t"].values).same
    assert calls
    xarray.testing.assert_identical(ours.to_xarray(), dataset["t"])


def test_data_of_dask_that_hide_values_are_refused():
    dask = pytest.importorskip("dask.array")
    masked = dask.from_array(np.ma.masked_equal([1.0, 2.0, 3.0], 2), chunks=2, asarray=False)
    with pytest.raises(ValueError, match="masked"):
        quillon.from_xarray(xarray.DataArray(masked, dims="x")).values


def test_says_what_no_dataset_holds():
    with pytest.raises(ValueError, match="'inner'"):
        quillon.Dictionary({"inner": {}}).to_xarray()
    with pytest.raises(quillon.ExportError, match="'x'"):
        quillon.Dictionary({"a": quillon.Array([1], ["x"]), "b": quillon.Array([1, 2], ["x"])}).to_xarray()
    with pytest.raises(TypeError):
        quillon.from_xarray([1])


def test_compares_with_what_xarray_has(dataset):
    assert quillon.compare(dataset, quillon.from_xarray(dataset), attrs=True).same
    other = dataset.copy(deep=True)
    other["t"][0, 1] = 9
    assert quillon.compare(dataset, other).lines() == [
        "/t: 1 of 6 values differ; the largest delta is 8 at time=0, x=1: 1 and 9"
    ]


def test_compares_coordinates_of_data_arrays(dataset):
    moved = dataset["t"].assign_coords(x=[1, 2, 4], lat=("x", [0.5, 1.5, 3.5]))
    assert quillon.compare(dataset["t"], dataset["t"].rename("other")).same
    report = quillon.compare(dataset["t"], moved)
    assert [(row.path, row.reason) for row in report.rows] == [("/x", "unit"), ("/x", "values"), ("/lat", "values")]
    assert not report
    assert report.values == 6 + 2 + 3 + 3 + 1
    assert quillon.compare(dataset["t"], moved.values)
    assert quillon.compare(moved.values, dataset["t"])


def test_has_an_accessor(dataset):
    import quillon.xarray  # noqa: F401

    other = dataset.copy(deep=True)
    other["t"] += 1e-9
    assert not dataset.quillon.compare(other)
    assert dataset.quillon.compare(other, atol=1e-6)
    assert dataset["t"].quillon.compare(other["t"], atol=1e-6)
    assert dataset.quillon.to_table(["time"], variables=["t"]).shape == (2, 4)
    assert dataset["t"].quillon.to_table(["x", "time"]).columns[-1] == "t"
    assert xarray.DataArray([1, 2], dims="x").quillon.to_table("x").columns == ["x", "values"]
    other["t"][1, 2] = 9
    row = dataset["t"].quillon.compare(other["t"]).rows[0]
    assert (row.first, row.second) == (5, 9)


def test_takes_frames():
    frame = pandas.DataFrame(
        {"area": [1.5, 2.5], "n": np.uint8([1, 2]), "name": ["a", None], "day": pandas.to_datetime(["2011-08-01", None])}
    )
    ours = quillon.from_pandas(frame, name="cells")
    assert (ours.name, list(ours)) == ("cells", ["area", "n", "name", "day"])
    assert ours["area"].dims == ("row",)
    assert ours["name"].values.tolist() == ["a", ""]
    assert ours["day"].dtype == "M8[ns]"
    assert quillon.compare(frame, frame.copy()).same
    assert quillon.compare(frame["area"], [1.5, 2.0]).rows[0].where == {"row": 1}


def test_missing_cells_are_nan_and_empty_texts():
    frame = pandas.DataFrame(
        {
            "integer": pandas.array([1, None], "Int64"),
            "number": np.array([1.5, None], object),
            "text": pandas.array(["a", None], "string"),
            "whole": pandas.array([1, 2], "Int64"),
        }
    )
    ours = quillon.from_pandas(frame)
    np.testing.assert_array_equal(ours["integer"].values, [1.0, np.nan])
    np.testing.assert_array_equal(ours["number"].values, [1.5, np.nan])
    assert ours["text"].values.tolist() == ["a", ""]
    assert ours["whole"].values.tolist() == [1, 2]


def test_integers_beside_missing_cells_are_not_rounded():
    for column in (pandas.array([2**53 + 1, None], "Int64"), np.array([2**53 + 1, None], object)):
        with pytest.raises(ValueError, match="'big' has missing values beside 9007199254740993"):
            quillon.from_pandas(pandas.DataFrame({"big": column}))
    whole = quillon.from_pandas(pandas.DataFrame({"big": pandas.array([2**53 + 1], "Int64")}))
    assert whole["big"].values.tolist() == [2**53 + 1]


def test_says_what_columns_with_missing_cells_hold():
    for cell in (pandas.Timestamp("2011-08-01", tz="UTC"), pandas.Period("2011", "Y")):
        with pytest.raises(TypeError, match=type(cell).__name__):
            quillon.from_pandas(pandas.DataFrame({"day": np.array([cell, None], object)}))


def test_refuses_names_that_are_paths():
    for frame in ({"a/b": [1]}, {"b": [1], "/b": [2]}, {"": [1]}):
        with pytest.raises(ValueError, match="no entry can be called"):
            quillon.from_pandas(pandas.DataFrame(frame))
    with pytest.raises(ValueError, match="several columns 'k'"):
        quillon.from_pandas(pandas.DataFrame({"k": [1]}, index=pandas.Index([3], name="k")))
    with pytest.raises(ValueError, match="no entry can be called 'a/b'"):
        quillon.from_xarray(xarray.Dataset({"a/b": ("x", [1])}))


def test_columns_and_indices_alone_are_arrays_of_rows():
    for some in (pandas.Series([1, 2]), pandas.Index([1, 2])):
        array = quillon.Dictionary({"a": some})["a"]
        assert (array.dims, array.values.tolist()) == (("row",), [1, 2])
    assert quillon.compare(pandas.Series([1, 2], name="one"), pandas.Index([1, 2])).same
    assert list(quillon.from_pandas(pandas.DataFrame([[1, 2]]))) == ["0", "1"]


def test_indices_of_frames_are_coordinates():
    index = pandas.MultiIndex.from_product([[1, 2], ["a", "b"]], names=["k", None])
    ours = quillon.from_pandas(pandas.DataFrame({"v": range(4)}, index=index))
    assert list(ours) == ["k", "level_1", "v"]
    assert set(ours.to_xarray().coords) == {"k", "level_1"}
    assert list(quillon.from_pandas(pandas.DataFrame({"v": [1]}, index=[5]))) == ["row", "v"]
    named = pandas.DataFrame({"v": [1, 2]}, pandas.RangeIndex(2, name="label"))
    assert {name: array.dims for name, array in quillon.from_pandas(named, dim="x").items()} == {"label": ("x",), "v": ("x",)}
    assert list(quillon.from_pandas(named.reset_index(drop=True))) == ["v"]
    with pytest.raises(ValueError, match="'v'"):
        quillon.from_pandas(pandas.DataFrame([[1, 2]], columns=["v", "v"]))


@given(st.lists(st.floats(), min_size=1), st.lists(st.integers(-(2**63), 2**63 - 1), min_size=1))
def test_frames_of_tables_are_those_of_pandas(floats, integers):
    size = min(len(floats), len(integers))
    frame = pandas.DataFrame({"f": floats[:size], "i": integers[:size]})
    again = quillon.from_pandas(frame).to_pandas()
    pandas.testing.assert_frame_equal(again.reset_index(drop=True), frame)


def test_asserts_that_things_are_the_same():
    quillon.testing.assert_same([1.0], [1.0])
    with pytest.raises(AssertionError) as error:
        quillon.testing.assert_same({"a": [1.0]}, {"a": [2.0]})
    assert str(error.value) == "/a: 1 of 1 values differ; the largest delta is 1 at dim_0=0: 1 and 2"
