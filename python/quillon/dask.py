"""Comparison and tables on engines that compute in parts.

The figures of parts merge in any order: with dask, with MPI's reduce, or by hand.

Examples
--------
>>> import numpy as np
>>> from quillon import dask
>>> halves = [dask.figures([1.0], [1.5], [k], [2]) for k in range(2)]
>>> dask.merge(dask.merge(dask.NOTHING, halves[0]), halves[1]).count
2
"""

from __future__ import annotations

import itertools
from collections.abc import Sequence
from typing import Any

import numpy as np

from quillon import _core
from quillon._array import Array
from quillon._compare import Report, sides
from quillon._compare import compare as compare_whole
from quillon._dictionary import Dictionary
from quillon._optional import require
from quillon._xarray import from_xarray

__all__ = ["NOTHING", "compare", "figures", "merge", "to_dask_dataframe"]

Figures = _core.Figures

NOTHING = Figures()
"""The figures of no values, which change nothing that they are merged with."""


def merge(a: Figures, b: Figures) -> Figures:
    """The figures of both parts, which share no value. Associative and commutative."""
    return _core.merge(a, b)


def figures(
    first: Any,
    second: Any,
    start: Sequence[int] | None = None,
    shape: Sequence[int] | None = None,
    *,
    atol: float = 0.0,
    rtol: float = 0.0,
    equal_nan: bool = True,
) -> Figures:
    """Compare two blocks of values.

    Parameters
    ----------
    first, second
        Blocks of one shape.
    start, shape : sequence of int, optional
        Where in a grid of which shape they begin; by default they are the grid.
    atol, rtol, equal_nan
        As for `quillon.compare`.

    Returns
    -------
    Figures
        To be merged with those of the other blocks; they pickle.

    Examples
    --------
    >>> figures([1.0, 2.0], [1.0, 2.5]).count
    1
    """
    left, right = sides(first, second)
    if isinstance(left, Dictionary) or isinstance(right, Dictionary):
        raise ValueError("figures are those of two arrays")
    return _core.figures(
        left._handle, right._handle, list(start or []), list(shape or []), atol, rtol, equal_nan, 1
    )


def _blocks(shape: Sequence[int], chunks: Sequence[Sequence[int]]) -> Any:
    """The start and the parts of each block of a grid."""
    starts = [np.cumsum([0, *sizes[:-1]]).tolist() for sizes in chunks]
    for position in itertools.product(*(range(len(sizes)) for sizes in chunks)):
        start = [starts[k][at] for k, at in enumerate(position)]
        yield start, tuple(slice(s, s + chunks[k][at]) for k, (s, at) in enumerate(zip(start, position)))


def _merged(dask: Any, parts: list[Any]) -> Any:
    """All parts as one, merged in pairs so that the engine can do it anywhere."""
    join = dask.delayed(merge, pure=True)
    while len(parts) > 1:
        pairs = [parts[k : k + 2] for k in range(0, len(parts), 2)]
        parts = [join(*pair) if len(pair) == 2 else pair[0] for pair in pairs]
    return parts[0] if parts else NOTHING


def _figures_in_parts(first: Any, second: Any, options: dict[str, Any]) -> Any:
    """The figures of two variables of xarray, to be computed block by block."""
    dask = require("dask")
    one = dask.delayed(figures, pure=True)
    shape = list(first.shape)
    chunks = first.chunks or second.chunks or tuple((extent,) for extent in shape)
    left, right = first.data, second.data
    parts = [
        one(left[part], right[part], start, shape, **options) for start, part in _blocks(shape, chunks)
    ]
    return _merged(dask, parts)


def _blank(array: Array, shape: Sequence[int]) -> Array:
    """An array of this shape, and otherwise of the outline of another one, that takes no memory."""
    values = np.broadcast_to(np.zeros((), array.dtype), shape)
    return array._with_values(values)


def _is_parted(*variables: Any) -> bool:
    """Whether values are compared in parts: one of both is dask's, and both are numbers."""
    return any(v.chunks is not None for v in variables) and all(
        v.dtype.kind in "biufcmM" for v in variables
    )


class _Parts:
    """A comparison in parts that is yet to be computed."""

    def __init__(self, first: Any, second: Any, path: str, options: dict[str, Any]) -> None:
        self._path = path
        outlines = [from_xarray(variable) for variable in (first, second)]
        same_shape = first.shape == second.shape
        shapes = [[min(1, n) for n in v.shape] if same_shape else v.shape for v in (first, second)]
        blanks = (_blank(outline, shape) for outline, shape in zip(outlines, shapes))
        # What there is to say besides values, and whether these can be compared.
        self._report = compare_whole(*({path: b} if path else b for b in blanks), **options)
        self._outline = _blank(outlines[0], first.shape)
        self.figures = NOTHING
        if self._report.values:
            self.figures = _figures_in_parts(first.variable, second.variable, options)

    def report(self, figures: Figures) -> _core.Report:
        return _core.with_figures(
            self._report._report, figures, self._outline._handle, f"/{self._path}"
        )


def _pairs(first: Any, second: Any) -> list[str]:
    """All names, those of the first one before what only the second one has."""
    return [*first.variables, *(name for name in second.variables if name not in first.variables)]


def _named(data: Any, name: str) -> dict[str, Any]:
    """The variable of a Dataset as an entry, if there is one; without coordinates of its own."""
    if name not in data.variables:
        return {}
    return {name: from_xarray(data[name].reset_coords(drop=True))}


def _compare_datasets(first: Any, second: Any, options: dict[str, Any]) -> list[Any]:
    jobs: list[Any] = []
    for name in _pairs(first, second):
        both = name in first.variables and name in second.variables
        if both and _is_parted(first[name], second[name]):
            arrays = (data[name].reset_coords(drop=True) for data in (first, second))
            jobs.append(_Parts(*arrays, str(name), options))
        else:
            jobs.append(compare_whole(_named(first, name), _named(second, name), **options))
    return jobs


def _compare_arrays(first: Any, second: Any, options: dict[str, Any]) -> list[Any]:
    if not _is_parted(first, second):
        return [compare_whole(first, second, **options)]
    coordinates = (Dictionary(from_xarray(data)._coordinates()) for data in (first, second))
    return [_Parts(first, second, "", options), compare_whole(*coordinates, **options)]


def compare(
    first: Any,
    second: Any,
    *,
    atol: float = 0.0,
    rtol: float = 0.0,
    equal_nan: bool = True,
) -> Report:
    """Compare what xarray has of dask's arrays, block by block, where dask computes.

    Parameters
    ----------
    first, second : xarray.DataArray or xarray.Dataset
        Of dask's arrays, or some of them.
    atol, rtol, equal_nan
        As for `quillon.compare`.

    Returns
    -------
    Report
        That of `quillon.compare`, word for word.

    Examples
    --------
    >>> import dask.array, quillon.dask, xarray
    >>> data = xarray.DataArray(dask.array.zeros((4, 2), chunks=(2, 2)), dims=("time", "x"))
    >>> quillon.dask.compare(data, data + 1, atol=0.5)
    /: 8 of 8 values differ; the largest delta is 1 at time=0, x=0: 0 and 1
    """
    options = {"atol": atol, "rtol": rtol, "equal_nan": equal_nan}
    xarray = require("xarray")
    if all(isinstance(side, xarray.DataArray) for side in (first, second)):
        jobs = _compare_arrays(first, second, options)
    elif all(isinstance(side, xarray.Dataset) for side in (first, second)):
        jobs = _compare_datasets(first, second, options)
    else:
        return compare_whole(first, second, **options)
    parts = [job for job in jobs if isinstance(job, _Parts)]
    computed = dict(zip(parts, require("dask").compute(*(part.figures for part in parts))))
    # That of nothing at all has the rule, and is the same where there is nothing to compare.
    whole = compare_whole({}, {}, **options)._report
    for job in jobs:
        found = job.report(computed[job]) if isinstance(job, _Parts) else job._report
        whole = _core.joined(whole, found)
    names = tuple("" if getattr(side, "name", None) is None else str(side.name) for side in (first, second))
    return Report(whole, names=names)


def _frame(part: Any, index: Sequence[str], start: int) -> Any:
    """The rows of a part that begins at `start` of the last index dimension."""
    frame = from_xarray(part).to_pandas(index).reset_index()
    if index[-1] not in part.coords:
        frame[index[-1]] += frame[index[-1]].dtype.type(start)
    return frame


def to_dask_dataframe(data: Any, index: str | Sequence[str]) -> Any:
    """Make a DataFrame of dask's of a Dataset: the table of `quillon.Dictionary.to_table`, in parts.

    Parameters
    ----------
    data : xarray.Dataset
        Whose chunks along the last dimension of `index` become partitions.
    index : sequence of str
        Names of dimensions that become rows, the first varying fastest. They are columns, as dask
        has no MultiIndex.

    Returns
    -------
    dask.dataframe.DataFrame

    Examples
    --------
    >>> import dask.array, quillon.dask, xarray
    >>> data = xarray.Dataset({"t": (("time", "x"), dask.array.ones((4, 2), chunks=(2, 2)))})
    >>> quillon.dask.to_dask_dataframe(data, ["x", "time"]).npartitions
    2
    """
    frames = require("dask.dataframe")
    names = [index] if isinstance(index, str) else list(index)
    slowest = names[-1]
    sizes = data.chunks.get(slowest) or (data.sizes[slowest],)
    starts = np.cumsum([0, *sizes[:-1]]).tolist()
    one = require("dask").delayed(_frame)
    parts = [
        one(data.isel({slowest: slice(start, start + size)}), names, start)
        for start, size in zip(starts, sizes)
    ]
    empty = _frame(data.isel({slowest: slice(0, min(1, data.sizes[slowest]))}), names, 0)
    return frames.from_delayed(parts, meta=empty.iloc[:0], verify_meta=False)
