"""The law of partial figures: any cutting merges, in any order, to what one pass over the whole finds."""

import itertools
import pickle

import numpy as np
import pytest
import quillon
from hypothesis import given, settings
from hypothesis import strategies as st
from hypothesis.extra import numpy as hnp
from quillon import dask as parts

# Few of them, so that deltas are often equal, or none.
VALUES = st.sampled_from([0.0, 1.0, -1.0, 2.5, 1e300, np.inf, -np.inf, np.nan])
SHAPES = hnp.array_shapes(min_dims=1, max_dims=6, min_side=1, max_side=4).filter(lambda s: np.prod(s) <= 400)


@st.composite
def pairs(draw):
    shape = draw(SHAPES)
    first = draw(hnp.arrays("f8", shape, elements=VALUES))
    same = draw(hnp.arrays("?", shape))
    return first, np.where(same, first, draw(hnp.arrays("f8", shape, elements=VALUES)))


@st.composite
def cuts(draw, shape):
    """For each dimension the extents of its chunks."""
    chunks = []
    for extent in shape:
        inner = draw(st.sets(st.integers(1, extent - 1))) if extent > 1 else set()
        ends = [0, *sorted(inner), extent]
        chunks.append(tuple(b - a for a, b in zip(ends, ends[1:])))
    return tuple(chunks)


def blocks(shape, chunks):
    starts = [list(itertools.accumulate(sizes, initial=0))[:-1] for sizes in chunks]
    for index in itertools.product(*(range(len(sizes)) for sizes in chunks)):
        start = [starts[k][at] for k, at in enumerate(index)]
        yield start, tuple(slice(s, s + chunks[k][at]) for k, (s, at) in enumerate(zip(start, index)))


def state(figures):
    """All that there is but the last digits of the sum."""
    values, count, missing, deltas, total, rest, relative, largest, kept = figures.__getstate__()
    return values, count, missing, deltas, relative, largest, kept


def merged(found, order):
    """Merged in any order, of any two neighbours first."""
    order.shuffle(found)
    while len(found) > 1:
        k = order.randrange(len(found) - 1)
        found[k : k + 2] = [parts.merge(found[k], found[k + 1])]
    return found[0]


RULES = st.fixed_dictionaries(
    {
        "atol": st.sampled_from([0.0, 1.0]),
        "rtol": st.sampled_from([0.0, 0.5]),
        "equal_nan": st.booleans(),
        "largest": st.sampled_from([1, 3]),
    }
)


@settings(max_examples=300)
@given(st.data(), pairs(), RULES, st.randoms(use_true_random=False))
def test_any_cutting_merges_to_one_pass_over_the_whole(data, pair, rules, order):
    first, second = pair
    whole = parts.figures(first, second, **rules)
    found = [
        parts.figures(first[part], second[part], start, first.shape, **rules)
        for start, part in blocks(first.shape, data.draw(cuts(first.shape)))
    ]
    total = merged([*found, parts.NOTHING], order)
    np.testing.assert_equal(state(total), state(whole))
    np.testing.assert_allclose(total.mean, whole.mean, 1e-12)
    np.testing.assert_equal(state(pickle.loads(pickle.dumps(total))), state(total))


@settings(max_examples=40)
@given(st.data(), pairs(), RULES)
def test_dask_reports_what_quillon_reports_however_it_is_cut(data, pair, rules):
    xarray = pytest.importorskip("xarray")
    pytest.importorskip("dask.array", reason="python3-dask is not installed")
    dims = [f"d{k}" for k in range(pair[0].ndim)]
    whole = [xarray.DataArray(values, dims=dims) for values in pair]
    cut = dict(zip(dims, data.draw(cuts(pair[0].shape))))
    report = parts.compare(*(side.chunk(cut) for side in whole), **rules)
    expected = quillon.compare(*whole, **rules)
    assert report.lines() == expected.lines()
    np.testing.assert_equal([row._replace(mean=0) for row in report.rows], [r._replace(mean=0) for r in expected.rows])
    assert (report.same, report.values) == (expected.same, expected.values)
