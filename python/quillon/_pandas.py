"""Objects of pandas, as ours."""

from __future__ import annotations

from numbers import Integral, Real
from typing import Any

import numpy as np

from quillon._array import Array
from quillon._dictionary import Dictionary, require_name
from quillon._optional import require

__all__ = ["entry_of", "from_pandas"]


def _values_of(column: Any) -> np.ndarray:
    """The column as numpy has it. A missing text is an empty one, as files have it."""
    values = column.to_numpy()
    if values.dtype != object:
        return values
    pandas = require("pandas")
    missing = np.asarray(pandas.isna(column))
    if not missing.any():
        return values.astype(getattr(column.dtype, "numpy_dtype", object))  # that of nullable numbers
    present = values[~missing]
    if all(isinstance(cell, str) for cell in present):
        return np.where(missing, "", values).astype(object)
    if not all(isinstance(cell, (Real, np.bool_)) for cell in present):
        return values
    numbers = column.to_numpy(dtype=float, na_value=np.nan)
    for cell, number in zip(present, numbers[~missing]):
        if isinstance(cell, Integral) and int(cell) != int(number):
            raise ValueError(
                f"the column {column.name!r} has missing values beside {cell}, which no float64 holds"
            )
    return numbers


def from_pandas(frame: Any, *, name: str = "", dim: str = "row") -> Dictionary:
    """Take a DataFrame as a dictionary with an array for each column.

    Parameters
    ----------
    frame : pandas.DataFrame
        Its index becomes coordinates, an array for each level, unless it counts the rows.
    name : str, optional
        What to call it.
    dim : str, optional
        What the rows are called as a dimension.

    Returns
    -------
    Dictionary

    Examples
    --------
    >>> import pandas, quillon
    >>> frame = pandas.DataFrame({"area": [212, 96]}, index=pandas.Index([3, 7], name="label"))
    >>> list(quillon.from_pandas(frame, dim="label"))
    ['label', 'area']
    """
    pandas = require("pandas")
    if not isinstance(frame, pandas.DataFrame):
        raise TypeError(f"a DataFrame is wanted, not a {type(frame).__name__}")
    dictionary = Dictionary(name=name)
    coordinates = set()

    def add(name: Any, column: Any) -> str:
        key = require_name(str(name))
        if dictionary._handle.contains(key):
            raise ValueError(f"the frame has several columns {key!r}")
        dictionary._set(key, Array(_values_of(column), [dim], name=key))
        return key

    if not frame.index.equals(pandas.RangeIndex(len(frame))) or frame.index.name is not None:
        for k in range(frame.index.nlevels):
            level = frame.index.get_level_values(k)
            alone = dim if frame.index.nlevels == 1 else f"level_{k}"
            coordinates.add(add(alone if level.name is None else level.name, level))
    for k, name_of_column in enumerate(frame.columns):
        add(name_of_column, frame.iloc[:, k])
    dictionary._handle.coordinates = coordinates
    return dictionary


def entry_of(value: Any) -> Array | Dictionary:
    """What a dictionary would keep of an object of pandas."""
    pandas = require("pandas")
    if isinstance(value, pandas.DataFrame):
        return from_pandas(value)
    if isinstance(value, (pandas.Series, pandas.Index)):
        return Array(_values_of(value), ["row"], name="" if value.name is None else str(value.name))
    return Array(value)
