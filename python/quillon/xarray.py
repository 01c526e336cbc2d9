"""The accessor ``quillon`` of xarray's objects; importing this module registers it.

Examples
--------
>>> import quillon.xarray, xarray
>>> data = xarray.Dataset({"t": ("time", [1.0, 2.0])})
>>> data.quillon.compare(data + 0.5, atol=1)
the same: 2 values
"""

from __future__ import annotations

from collections.abc import Sequence
from typing import Any

from quillon._compare import Report, compare
from quillon._dictionary import Dictionary
from quillon._optional import require
from quillon._tables import Table
from quillon._xarray import from_xarray

__all__ = ["QuillonAccessor"]

_xarray = require("xarray")


class QuillonAccessor:
    """What quillon does with a Dataset or a DataArray."""

    def __init__(self, data: Any) -> None:
        self._data = data

    def _dictionary(self) -> Dictionary:
        data = self._data
        if isinstance(data, _xarray.DataArray):
            data = data.to_dataset(name=data.name or "values")
        return from_xarray(data)

    def compare(self, other: Any, **options: Any) -> Report:
        """Compare it with whatever `quillon.compare` takes."""
        return compare(self._data, other, **options)

    def to_table(self, index: str | Sequence[str] | None = None, **options: Any) -> Table:
        """Make a table of it, as `quillon.Dictionary.to_table` does."""
        return self._dictionary().to_table(index, **options)


_xarray.register_dataset_accessor("quillon")(QuillonAccessor)
_xarray.register_dataarray_accessor("quillon")(QuillonAccessor)
