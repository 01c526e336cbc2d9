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

from collections.abc import Iterator, Mapping, Sequence
from typing import Any

from quillon import _core, _parts
from quillon._compare import Comparison, Report, core_rules, sides
from quillon._dictionary import Dictionary
from quillon._optional import require
from quillon._partitions import to_dask_dataframe
from quillon._rechunk import RechunkWarning, rechunked
from quillon._stored import open

__all__ = ["NOTHING", "RechunkWarning", "compare", "figures", "merge", "open", "report", "to_dask_dataframe"]

Figures = _core.Figures

NOTHING = Figures()
"""The figures of no values, which change nothing that they are merged with."""


def merge(a: Figures, b: Figures) -> Figures:
    """The figures of both parts, which share no value. Associative and commutative.

    Examples
    --------
    >>> merge(figures([1.0], [1.5], [0], [2]), figures([2.0], [2.0], [1], [2])).count
    1
    """
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
    largest: int = 1,
) -> Figures:
    """Compare two blocks of values.

    Parameters
    ----------
    first, second
        Blocks of one shape.
    start, shape : sequence of int, optional
        Where in a grid of which shape they begin; by default they are the grid.
    atol, rtol, equal_nan, largest
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
        left._handle, right._handle, list(start or []), list(shape or []), atol, rtol, equal_nan, largest
    )


def report(first: Any, second: Any, figures: Mapping[str, Figures], **rules: Any) -> Report:
    """Give the report of two sides whose values were compared in parts.

    Parameters
    ----------
    first, second
        As for `quillon.compare`.
    figures : mapping
        For paths the merged figures of their arrays, whose values are not read; all others are.
    **rules
        As for `quillon.compare`; those of the figures are said for these.

    Examples
    --------
    >>> one, other = {"t": [1.0, 2.0]}, {"t": [1.0, 2.5]}
    >>> halves = [figures(one["t"][k:k + 1], other["t"][k:k + 1], [k], [2]) for k in range(2)]
    >>> report(one, other, {"/t": merge(*halves)})
    /t: 1 of 2 values differ; the largest delta is 0.5 at dim_0=1: 2 and 2.5
    """
    comparison = Comparison(first, second, core_rules(**rules))
    return comparison.report(lambda path, *_: (figures[path], []) if path in figures else None)


def _is_parted(*variables: Any) -> bool:
    """Whether values are compared in parts: one of both is dask's, and both are numbers."""
    return any(v.chunks for v in variables) and all(v.dtype.kind in "biufcmM" for v in variables)


def _pairs(first: Any, second: Any) -> Iterator[tuple[str, Any, Any]]:
    """The path and the variables of xarray for all that is compared in parts."""
    named = [{f"/{name}": v for name, v in side.items()} for side in (_inner(first), _inner(second))]
    if hasattr(first, "variable"):
        named[0]["/"], named[1]["/"] = first.variable, second.variable
    for path, one in named[0].items():
        other = named[1].get(path)
        if other is not None and one.shape == other.shape and _is_parted(one, other):
            yield path, one, other


def _inner(data: Any) -> Mapping[str, Any]:
    """What is compared of a Dataset, or besides the values of a DataArray."""
    if hasattr(data, "variable"):
        return {name: coordinate.variable for name, coordinate in data.coords.items()}
    return data.variables


def _alike(path: str, first: Any, second: Any) -> tuple[Any, Any]:
    """Both as arrays of dask's with the same chunks."""
    chunks = first.chunks or second.chunks
    left, right = (v.data if v.chunks else v.chunk(dict(zip(v.dims, chunks))).data for v in (first, second))
    return left, right if left.chunks == right.chunks else rechunked(path, right, left.chunks)


def compare(
    first: Any,
    second: Any,
    *,
    atol: float = 0.0,
    rtol: float = 0.0,
    tolerances: Mapping[str, Mapping[str, float]] | None = None,
    equal_nan: bool = True,
    attrs: bool = False,
    ignore: Sequence[str] = (),
    largest: int = 1,
) -> Report:
    """Compare what xarray has of dask's arrays, block by block, where dask computes.

    Reading and comparing a block is one task. One that cannot be read is named in
    ``Report.not_compared``, with its file, and all others are compared.

    Parameters
    ----------
    first, second : xarray.DataArray or xarray.Dataset
        Of dask's arrays, or some of them. Of different chunks, those of the first hold.
    atol, rtol, tolerances, equal_nan, attrs, ignore, largest
        As for `quillon.compare`.

    Returns
    -------
    Report
        That of `quillon.compare`, word for word.

    Warns
    -----
    RechunkWarning
        Where the second side is rechunked, as its chunks are others.

    Examples
    --------
    >>> import dask.array, quillon.dask, xarray
    >>> data = xarray.DataArray(dask.array.zeros((4, 2), chunks=(2, 2)), dims=("time", "x"))
    >>> quillon.dask.compare(data, data + 1, atol=0.5)
    /: 8 of 8 values differ; the largest delta is 1 at time=0, x=0: 0 and 1
    """
    rules = core_rules(atol, rtol, tolerances, equal_nan, attrs, ignore, largest)
    comparison = Comparison(first, second, rules)
    xarray = require("xarray")
    if not any(all(isinstance(s, kind) for s in (first, second)) for kind in (xarray.DataArray, xarray.Dataset)):
        return comparison.report()
    asked: dict[str, tuple[float, float]] = {}

    def ask(path: str, *tolerance: float) -> tuple[Figures, list[str]]:
        asked[path] = tolerance
        return NOTHING, []

    comparison.report(ask)  # which reads nothing, but says what values are to be compared, and how
    found = _parts.compute(
        {
            path: _parts.Pair(*_alike(path, one, other), one.dims, _parts.Rule(*asked[path], rules[3], rules[-1]))
            for path, one, other in _pairs(first, second)
            if path in asked
        }
    )

    def known(path: str, *_: float) -> tuple[Figures, list[str]] | None:
        partial = found.get(path)
        return partial and (partial.figures, [why for _, why in partial.failures])

    return comparison.report(known)


for _public in (RechunkWarning, open, to_dask_dataframe):
    _public.__module__ = __name__
