"""What offers Arrow's C stream interface, as ours."""

from __future__ import annotations

from typing import Any

from quillon import _core
from quillon._array import Array
from quillon._dictionary import Dictionary
from quillon._tables import Table

__all__ = ["entry_of", "from_arrow"]


def from_arrow(data: Any) -> Table:
    """Take a table of another library, such as pyarrow, polars, DuckDB or pandas, as ours.

    Parameters
    ----------
    data
        Whatever has a method ``__arrow_c_stream__``. It is read to its end, without a copy.

    Returns
    -------
    Table
        Times are ``datetime64[us]``. Columns of integers and truth values some of which are missing
        are ``float64`` with NaN; missing texts are empty.

    Raises
    ------
    TypeError
        For what has no such method.
    ExportError
        For columns that no table has, such as nested ones, and for a stream that fails.

    Examples
    --------
    >>> import quillon
    >>> table = quillon.Dictionary({"area": quillon.Array([212, 96], ["label"], unit="um2")}).to_table()
    >>> quillon.from_arrow(table)
    label  area
            um2
        0   212
        1    96
    [2 rows x 2 columns]
    """
    stream = getattr(data, "__arrow_c_stream__", None)
    if stream is None or isinstance(data, type):
        raise TypeError(f"an object with __arrow_c_stream__ is wanted, not a {type(data).__name__}")
    return Table._over(_core.table_from_arrow(stream()))


def entry_of(value: Any) -> Dictionary:
    """What a dictionary would keep of a table: an array along "row" for each column."""
    table = value if isinstance(value, Table) else from_arrow(value)
    units = table.units
    return Dictionary(
        {
            name: Array(table[name], ["row"], name=name, unit=units.get(name, ""))
            for name in table.columns
        }
    )
