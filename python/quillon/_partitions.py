"""Tables in the partitions of dask."""

from __future__ import annotations

import itertools
import math
from collections.abc import Sequence
from typing import Any

import numpy as np

from quillon._optional import require
from quillon._rechunk import unified
from quillon._xarray import from_xarray

__all__ = ["to_dask_dataframe"]


def _frame(part: Any, index: Sequence[str], start: int, before: int, as_index: bool) -> Any:
    """The rows of a part that begins at `start` of the last index dimension, `before` rows in."""
    slowest = index[-1]
    frame = from_xarray(part).to_pandas(index).reset_index()
    if slowest not in part.coords:
        frame[slowest] += frame[slowest].dtype.type(start)
    if as_index:
        return frame.set_index(slowest)
    frame.index += before
    return frame


def _outline(data: Any, slowest: str) -> Any:
    """The first of its rows, of which no values are read."""
    first = data.isel({slowest: slice(0, 1)})
    blank = {
        name: v.copy(data=np.zeros(v.shape, v.dtype)) for name, v in first.variables.items() if v.chunks
    }
    return first.assign(blank)


def _divisions(ends: Sequence[Any]) -> list[Any] | None:
    """The first and last index values of each partition, as dask has them, where they ascend."""
    ordered = all(a <= b for a, b in ends) and all(a[1] < b[0] for a, b in zip(ends, ends[1:]))
    return [*(first for first, _ in ends), ends[-1][1]] if ordered else None


def _ends_of_rows(starts: Sequence[int], rows: int) -> list[tuple[int, int]]:
    """The numbers of the first and last row of each partition, of `rows` for each position."""
    return [(a * rows, b * rows - 1) for a, b in zip(starts, starts[1:])]


def _ends_of_values(coordinate: Any, starts: Sequence[int]) -> list[tuple[Any, Any]]:
    """The first and last value of each partition; nothing where they are not in order."""
    if not coordinate.is_monotonic_increasing:
        return []
    return [(coordinate[a], coordinate[b - 1]) for a, b in zip(starts, starts[1:])]


def to_dask_dataframe(data: Any, index: str | Sequence[str], *, set_index: bool = False) -> Any:
    """Make a DataFrame of dask's of a Dataset: the table of `quillon.Dictionary.to_table`, in parts.

    Parameters
    ----------
    data : xarray.Dataset
        Each of whose chunks along the last dimension of `index` becomes a partition.
    index : sequence of str
        Names of dimensions that become rows, the first varying fastest. They are columns, as dask
        has no MultiIndex.
    set_index : bool, optional
        Whether the last one is the index of the frame instead of the numbers of the rows.

    Returns
    -------
    dask.dataframe.DataFrame
        Its divisions are known, with `set_index` where that dimension ascends.

    Warns
    -----
    RechunkWarning
        Where the variables have different chunks, which then are cut at the same places.

    Examples
    --------
    >>> import dask.array, quillon.dask, xarray
    >>> data = xarray.Dataset({"t": (("time", "x"), dask.array.ones((4, 2), chunks=(2, 2)))})
    >>> quillon.dask.to_dask_dataframe(data, ["x", "time"]).divisions
    (0, 4, 7)
    """
    frames = require("dask.dataframe")
    names = [index] if isinstance(index, str) else list(index)
    slowest = names[-1]
    data, chunks = unified(data)
    starts = list(itertools.accumulate(chunks.get(slowest) or (data.sizes[slowest],), initial=0))
    rows = math.prod(data.sizes[name] for name in names[:-1])
    one = require("dask").delayed(_frame)
    parts = [
        one(data.isel({slowest: slice(a, b)}), names, a, a * rows, set_index)
        for a, b in zip(starts, starts[1:])
    ]
    ends = _ends_of_values(data.get_index(slowest), starts) if set_index else _ends_of_rows(starts, rows)
    meta = _frame(_outline(data, slowest), names, 0, 0, set_index).iloc[:0]
    divisions = _divisions(ends) if ends else None
    return frames.from_delayed(parts, meta=meta, divisions=divisions, verify_meta=False)
