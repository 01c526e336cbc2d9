"""Objects of pandas, as ours."""

from __future__ import annotations

from typing import Any

import numpy as np

from quillon._array import Array
from quillon._dictionary import Dictionary
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
    return column.to_numpy(dtype=float, na_value=np.nan)


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
    if not frame.index.equals(pandas.RangeIndex(len(frame))) or frame.index.name is not None:
        for k in range(frame.index.nlevels):
            level = frame.index.get_level_values(k)
            alone = dim if frame.index.nlevels == 1 else f"level_{k}"
            key = alone if level.name is None else str(level.name)
            dictionary[key] = Array(_values_of(level), [dim], name=key)
            coordinates.add(key)
    for k, key in enumerate(frame.columns):
        if str(key) in dictionary:
            raise ValueError(f"the frame has several columns {str(key)!r}")
        dictionary[str(key)] = Array(_values_of(frame.iloc[:, k]), [dim], name=str(key))
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
