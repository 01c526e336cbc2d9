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
