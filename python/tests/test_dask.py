"""Figures in parts, and what dask computes of them."""

import functools
import pickle
import random

import numpy as np
import pytest
import quillon
from hypothesis import given
from hypothesis import strategies as st
from hypothesis.extra import numpy as hnp
from quillon import dask as parts

dask = pytest.importorskip("dask")
xarray = pytest.importorskip("xarray")

VALUES = st.sampled_from([0.0, 1.0, 2.5, np.inf, np.nan])


def text(report):
    """All but the last digits of the means."""
    return [str(report), report.values, [row._replace(mean=0) for row in report.rows], report.not_compared]


def same(one, other):
    np.testing.assert_equal(text(one), text(other))
    np.testing.assert_allclose([r.mean for r in one.rows], [r.mean for r in other.rows], 1e-12)


def figures_of(f):
    return f.values, f.count, f.missing, str(f.largest_relative), str(f.mean)


@given(hnp.arrays("f8", (4, 3), elements=VALUES), hnp.arrays("f8", (4, 3), elements=VALUES), st.randoms())
def test_figures_merge_in_any_order(a, b, order):
    whole = parts.figures(a, b, atol=1)
    rows = [parts.figures(a[k : k + 1], b[k : k + 1], [k, 0], [4, 3], atol=1) for k in range(4)]
    rows += [parts.NOTHING]
    order.shuffle(rows)
    assert figures_of(functools.reduce(parts.merge, rows)) == figures_of(whole)
    assert figures_of(functools.reduce(lambda x, y: parts.merge(y, x), rows)) == figures_of(whole)
    assert figures_of(pickle.loads(pickle.dumps(whole))) == figures_of(whole)


def test_refuses_parts_that_are_none():
    for arguments in (([1.0], [1.0, 2.0]), ([1.0], [1.0], [2], [2]), ([1.0], ["a"]), ({"a": [1]}, {"a": [1]})):
        with pytest.raises(ValueError):
            parts.figures(*arguments)


def dataset(seed, dtype="f8"):
    rng = np.random.default_rng(seed)
    values = rng.integers(0, 3, (6, 5)).astype(dtype)
    return xarray.Dataset(
        {"t": (("time", "x"), values, {"units": "K"}), "n": ("x", np.arange(5) + seed), "s": ("x", list("abcde"))},
        {"time": np.arange(6) * 10, "lat": ("x", np.arange(5.0))},
    )


@pytest.mark.parametrize("dtype", ["f8", "f4", "i4", "M8[ns]", "?"])
@pytest.mark.parametrize("chunks", [{"time": 2}, {"time": 4, "x": 2}, {}])
def test_reports_are_those_of_the_whole_word_for_word(dtype, chunks):
    one, other = dataset(1, dtype), dataset(2, dtype)
    lazy = [data.chunk(chunks) for data in (one, other)]
    same(parts.compare(*lazy), quillon.compare(one, other))
    same(parts.compare(lazy[0], other, atol=1), quillon.compare(one, other, atol=1))
    same(parts.compare(lazy[0]["t"], lazy[1]["t"]), quillon.compare(one["t"], other["t"]))
    assert parts.compare(lazy[0], lazy[0])


def test_outlines_are_compared_as_well():
    one = dataset(1).chunk({"time": 2})
    for other in (
        one.drop_vars("n").assign(z=1),
        one.isel(x=slice(0, 3)),
        one.rename(time="day"),
        one.assign(t=one["t"].assign_attrs(units="C")),
        one.assign(t=one["t"].astype(int)),
    ):
        same(parts.compare(one, other), quillon.compare(one, other))
        same(parts.compare(one["t"], other["t"]), quillon.compare(one["t"], other["t"]))


@pytest.mark.parametrize("index", [["x", "time"], ["time", "x"], ["time"], "x"])
@pytest.mark.parametrize("with_coordinates", [True, False])
def test_frames_are_those_of_the_whole(index, with_coordinates):
    frames = pytest.importorskip("dask.dataframe")
    data = dataset(1) if with_coordinates else dataset(1).drop_vars(["time", "lat"])
    expected = quillon.from_xarray(data).to_pandas(index).reset_index()
    frame = parts.to_dask_dataframe(data.chunk({"time": 4, "x": 2}), index)
    assert isinstance(frame, frames.DataFrame)
    computed = frame.compute().reset_index(drop=True)
    for column in expected:
        np.testing.assert_array_equal(computed[column], expected[column])


def test_lazy_reading_beside_dask_does_not_lock(tmp_path):
    pytest.importorskip("netCDF4")
    path = tmp_path / "t.nc"
    dataset(1).drop_vars("s").to_netcdf(path)
    with xarray.open_dataset(path, chunks={"time": 2}) as lazy, quillon.open(path) as file:
        assert quillon.compare(lazy["t"], file["t"]).same
        assert quillon.from_xarray(lazy).to_table(["x", "time"], variables=["t"])["t"].size == 30
