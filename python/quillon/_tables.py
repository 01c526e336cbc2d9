"""Tables."""

from __future__ import annotations

import contextlib
import datetime
import os
from collections.abc import Iterator, Mapping, Sequence
from typing import TYPE_CHECKING, Any, BinaryIO

import numpy as np

from quillon import _core
from quillon._arguments import mapping, nearest, text, texts, whole_number

if TYPE_CHECKING:
    import pandas

    from quillon._dictionary import Dictionary

__all__ = ["Table"]


def _is_position(value: Any) -> bool:
    return isinstance(value, (int, np.integer)) and not isinstance(value, (bool, np.bool_))


def _coordinate(dimension: str, value: Any) -> Any:
    """A coordinate as the libraries take it: a text, a number, or a time in a tuple."""
    if isinstance(value, str):
        return text(f"a coordinate of {dimension!r}", value)
    if isinstance(value, (np.datetime64, datetime.date)):
        if value != value:  # noqa: PLR0124
            raise ValueError(f"no coordinate of {dimension!r} is {value}")
        return (int(np.datetime64(value).astype("datetime64[us]").astype(np.int64)),)
    if isinstance(value, (float, np.floating)) or _is_position(value):
        return float(value)
    raise TypeError(f"no coordinate of {dimension!r} is of the type {type(value).__name__}")


def _choice(dimension: Any, chosen: Any) -> tuple[str, str, Any, Any, int]:
    text("a dimension of select", dimension)
    if _is_position(chosen):
        return dimension, "position", whole_number(dimension, chosen), None, 1
    if not isinstance(chosen, slice):
        return dimension, "nearest", _coordinate(dimension, chosen), None, 1
    ends = (chosen.start, chosen.stop)
    if all(end is None or _is_position(end) for end in ends):
        start, stop = (None if end is None else whole_number(dimension, end) for end in ends)
        step = 1 if chosen.step is None else whole_number(f"the step of {dimension!r}", chosen.step)
        return dimension, "positions", start, stop, step
    if None in ends or chosen.step is not None:
        raise ValueError(f"a slice of coordinates of {dimension!r} has both ends and no step")
    start, stop = (_coordinate(dimension, end) for end in ends)
    return dimension, "between", start, stop, 1


def _listed(argument: str, names: str | Sequence[str] | None) -> list[str] | None:
    return None if names is None else texts(argument, names)


def _limit(max_rows: int | None) -> int:
    count = 0 if max_rows is None else whole_number("max_rows", max_rows)
    if count < 0:
        raise ValueError(f"a number of rows is not negative, as {max_rows} is")
    return count


def _require_no_error(number: int, path: str) -> None:
    if number:
        raise OSError(number, os.strerror(number), path)


@contextlib.contextmanager
def _whole(path: str) -> Iterator[BinaryIO]:
    """A file to write that is there whole or not at all, behind all links.

    Devices and pipes are written to; what this process has open, as ``/dev/stdout``, goes on.
    """
    if not path or "\0" in path:
        raise ValueError(f"{path!r} is empty or has a null character, as no file's name")
    descriptor, target, fault = _core.output_target(os.fsencode(path))
    if descriptor >= 0 or (os.path.exists(path) and not os.path.isfile(path)):
        with open(descriptor if descriptor >= 0 else path, "wb", closefd=descriptor < 0) as file:
            yield file
        return
    _require_no_error(fault, path)
    temporary = _core.TemporaryFile(target)
    try:
        _require_no_error(temporary.error, path)
        with open(temporary.descriptor, "wb", closefd=False) as file:
            yield file
        with contextlib.suppress(FileNotFoundError):
            os.fchmod(temporary.descriptor, os.stat(target).st_mode & 0o777)
        _require_no_error(temporary.move_to_target(), path)
    finally:
        del temporary  # a traceback would keep it


class Table:
    """Columns of one length with units, read when they are asked for.

    It is made by `Dictionary.to_table`, or by `from_arrow` of what another library has, and keeps
    what it is made of, as that was then. Whatever takes Arrow's streams takes it: there missing
    values are null, and units are metadata of their fields under the key ``units``.

    Examples
    --------
    >>> import quillon
    >>> area = quillon.Array([212, 96], ["label"], unit="um2")
    >>> table = quillon.Dictionary({"area": area}).to_table()
    >>> table.columns, table.units, table.shape, table.index
    (['label', 'area'], {'area': 'um2'}, (2, 2), ['label'])
    >>> table["area"]
    array([212,  96])
    """

    __slots__ = ("_columns", "_table")

    @classmethod
    def _of(
        cls,
        dictionary: Dictionary,
        index: str | Sequence[str] | None,
        variables: Sequence[str] | None,
        select: Mapping[str, Any] | None,
    ) -> Table:
        choices = [_choice(dimension, chosen) for dimension, chosen in mapping("select", select).items()]
        unreadable = getattr(dictionary, "_unreadable", list)()
        return cls._over(
            _core.make_table(
                dictionary._handle,
                _listed("index", index),
                _listed("variables", variables),
                choices,
                unreadable,
            )
        )

    @classmethod
    def _over(cls, handle: _core.Table) -> Table:
        table = cls.__new__(cls)
        table._table = handle
        table._columns = handle.columns()
        return table

    @property
    def columns(self) -> list[str]:
        """The names of all columns, the index's first."""
        return [name for name, _, _ in self._columns]

    @property
    def units(self) -> dict[str, str]:
        """The units of the columns that have one."""
        return {name: unit for name, unit, _ in self._columns if unit}

    @property
    def shape(self) -> tuple[int, int]:
        """How many rows and columns there are."""
        return self._table.rows, len(self._columns)

    @property
    def index(self) -> list[str]:
        """The names of the columns that tell the rows."""
        return [name for name, _, is_index in self._columns if is_index]

    @property
    def notes(self) -> list[str]:
        """A sentence for each array that is not there, with the reason."""
        return self._table.notes()

    def _number(self, column: str) -> int:
        for k, (name, _, _) in enumerate(self._columns):
            if name == column:
                return k
        raise KeyError(f"there is no column {column!r}; the nearest are {nearest(str(column), self.columns)}")

    def __getitem__(self, column: str) -> np.ndarray:
        return self._table.read(self._number(column), 0, self._table.rows)

    def __len__(self) -> int:
        return self._table.rows

    def __repr__(self) -> str:
        from quillon import _display

        return self._table.text("text", 10, _display.width_of_terminal()).removesuffix("\n")

    __str__ = __repr__

    def _repr_html_(self) -> str:
        from quillon import _display

        return _display.table_html(self)

    def to_numpy(self) -> dict[str, np.ndarray]:
        """Give all columns.

        Examples
        --------
        >>> import quillon
        >>> quillon.Dictionary({"area": quillon.Array([212], ["label"])}).to_table().to_numpy()
        {'label': array([0]), 'area': array([212])}
        """
        return {name: self[name] for name in self.columns}

    def _level(self, column: str, stride: int, size: int) -> np.ndarray:
        """The coordinates of an index dimension, of which every `stride`-th row begins one."""
        return self._table.read(self._number(column), 0, stride * size)[::stride]

    def _pandas_index(self, pandas: Any) -> Any:
        axes = self._table.axes()
        names = [name for name, _ in axes]
        if not axes:
            return None
        if len(axes) == 1:
            return pandas.Index(self[self.index[0]], name=names[0])
        if not self._table.rows:
            return pandas.MultiIndex.from_arrays([self[column] for column in self.index], names=names)
        levels, codes, stride = [], [], 1
        for column, (_, size) in zip(self.index, axes):
            level = pandas.Index(self._level(column, stride, size))
            positions = np.arange(size, dtype=np.int32)
            if not level.is_unique or level.hasnans:
                positions, level = pandas.factorize(level, sort=False)
            each = np.repeat(positions, stride)
            codes.append(np.tile(each, self._table.rows // max(1, len(each))))
            levels.append(level)
            stride *= size
        return pandas.MultiIndex(levels, codes, names=names, verify_integrity=False)

    def to_pandas(self) -> pandas.DataFrame:
        """Give it to pandas, with the coordinates as (Multi)Index.

        Examples
        --------
        >>> import quillon
        >>> area = quillon.Array([212, 96], ["label"])
        >>> quillon.Dictionary({"area": area}).to_table().to_pandas().index.name
        'label'
        """
        from quillon._optional import require

        pandas = require("pandas")
        index = self._pandas_index(pandas)
        columns = {name: self[name] for name, _, is_index in self._columns if not is_index}
        return pandas.DataFrame(columns, index=index, copy=False)

    def _written(self, form: str, path: Any) -> str | None:
        if path is None:
            return self._table.text(form, 0, 0)
        if hasattr(path, "write"):
            self._table.write(form, lambda piece: path.write(piece.decode()))
            return None
        with _whole(os.fsdecode(path)) as file:
            self._table.write(form, file.write)
        return None

    def to_csv(self, path: Any = None) -> str | None:
        """Write comma-separated values, all rows of them.

        Parameters
        ----------
        path : path or file, optional
            Where to; a file is there whole or not at all. By default the text is returned.

        Examples
        --------
        >>> import quillon
        >>> print(quillon.Dictionary({"area": quillon.Array([212], ["label"])}).to_table().to_csv())
        label,area
        0,212
        <BLANKLINE>
        """
        return self._written("csv", path)

    def to_json(self, path: Any = None) -> str | None:
        """Write a JSON array with an object for each row; as for `to_csv`.

        Examples
        --------
        >>> import json, quillon
        >>> table = quillon.Dictionary({"area": quillon.Array([212], ["label"])}).to_table()
        >>> json.loads(table.to_json())
        [{'label': 0, 'area': 212}]
        """
        return self._written("json", path)

    def to_string(self, max_rows: int | None = None) -> str:
        """Give aligned text, all rows of it or the first.

        Examples
        --------
        >>> import quillon
        >>> area = quillon.Array([212, 96], ["label"])
        >>> print(quillon.Dictionary({"area": area}).to_table().to_string(1))
        label  area
            0   212
        [2 rows x 2 columns]
        <BLANKLINE>
        """
        return self._table.text("text", _limit(max_rows), 0)

    def to_html(self, max_rows: int | None = None) -> str:
        """Give an HTML table, all rows of it or the first.

        Examples
        --------
        >>> import quillon
        >>> quillon.Dictionary({"area": [212]}).to_table().to_html().count("<tr>")
        2
        """
        return self._table.text("html", _limit(max_rows), 0)

    def __arrow_c_schema__(self) -> Any:
        return self._table.arrow_schema()

    def __arrow_c_stream__(self, requested_schema: Any = None) -> Any:
        return self._table.arrow_stream()

    def __dataframe__(self, nan_as_null: bool = False, allow_copy: bool = True) -> Any:
        from quillon._optional import require

        frame = require("pandas").DataFrame(self.to_numpy(), copy=False)
        return frame.__dataframe__(nan_as_null, allow_copy)
