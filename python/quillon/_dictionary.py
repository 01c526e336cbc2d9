"""Dictionaries."""

from __future__ import annotations

import types
from collections.abc import Iterator, Mapping, MutableMapping, Sequence
from typing import TYPE_CHECKING, Any

from quillon import _core
from quillon._arguments import is_text, mapping, nearest, text
from quillon._array import Array

if TYPE_CHECKING:
    import pandas
    import xarray

    from quillon._tables import Table

__all__ = ["Dictionary", "as_entry", "require_name"]


def as_entry(value: Any) -> Array | Dictionary:
    """What a dictionary would keep of a value."""
    if isinstance(value, (Array, Dictionary)):
        return value
    package = type(value).__module__.partition(".")[0]
    if package == "xarray":
        from quillon._xarray import from_xarray

        return from_xarray(value)
    if package == "pandas":
        from quillon._pandas import entry_of

        return entry_of(value)
    if hasattr(value, "__arrow_c_stream__"):
        from quillon._arrow import entry_of as columns_of

        return columns_of(value)
    return Dictionary(value) if isinstance(value, Mapping) else Array(value)


def require_name(name: Any) -> str:
    """The name of an entry. A path is none."""
    if not isinstance(name, str):
        raise TypeError(f"entries are called by texts, not by {name!r}")
    if "/" in name or not name:
        raise ValueError(f"no entry can be called {name!r}: '/' parts the names of a path")
    if not is_text(name):
        raise ValueError(f"no entry can be called {name!r}: it has lone surrogates")
    return name


class Dictionary(MutableMapping):
    """Named arrays and dictionaries in their order; they nest.

    What is assigned becomes an entry of its own that shares its values: a later change of a
    dictionary that was assigned does not reach the entry. Entries outlive the dictionary.

    Parameters
    ----------
    entries : mapping, optional
        Names and what they stand for: arrays, whatever becomes one, dictionaries, mappings, objects
        of xarray and pandas, and tables of whatever offers Arrow's streams.
    name, description : str, optional
        What it is called, and for.
    attrs : mapping, optional
        Further remarks: texts, numbers and lists of these.

    Examples
    --------
    >>> import quillon
    >>> cells = quillon.Dictionary({"area": quillon.Array([212, 96], ["label"], unit="um2")})
    >>> cells["otsu"] = {"threshold": 0.5}
    >>> list(cells), cells["otsu/threshold"].values
    (['area', 'otsu'], array(0.5))
    """

    def __init__(
        self,
        entries: Mapping[str, Any] | None = None,
        *,
        name: str = "",
        description: str = "",
        attrs: Mapping[str, Any] | None = None,
    ) -> None:
        self._handle = _core.Dictionary(text("name", name), text("description", description))
        self._container: Dictionary | None = None
        self._handle.set_attrs(dict(mapping("attrs", attrs)))
        if type(entries).__module__.partition(".")[0] in ("xarray", "pandas"):
            entries = as_entry(entries)
        if isinstance(entries, Dictionary):
            self._handle.coordinates = entries._handle.coordinates
        for entry, value in mapping("entries", entries).items():
            self._set(require_name(entry), value)

    @classmethod
    def _of(cls, handle: _core.Dictionary, container: Dictionary | None = None) -> Dictionary:
        dictionary = Dictionary.__new__(Dictionary)
        dictionary._handle = handle
        dictionary._container = container  # whose coordinates it uses
        return dictionary

    @property
    def name(self) -> str:
        """What the dictionary is called."""
        return self._handle.name

    @property
    def description(self) -> str:
        """What the dictionary is for."""
        return self._handle.description

    @property
    def attrs(self) -> Mapping[str, Any]:
        """All further remarks, read-only."""
        return types.MappingProxyType(self._handle.attrs)

    def _entry(self, name: str) -> Array | Dictionary:
        handle = self._handle.get(name)
        if isinstance(handle, _core.Array):
            return Array._of(handle)
        return Dictionary._of(handle, self)

    def _missing(self, path: str, name: str) -> KeyError:
        near = nearest(name, self._handle.names())
        where = f"the dictionary {self.name!r}" if self.name else "the dictionary"
        return KeyError(
            f"there is no entry {path!r}: {where} has no {name!r}"
            + (f"; the nearest are {near}" if near else "")
        )

    def _find(self, path: str) -> Array | Dictionary:
        place: Any = self
        for name in path.lstrip("/").split("/"):
            if not isinstance(place, Dictionary):
                raise KeyError(f"there is no entry {path!r}: {place.name!r} is an array")
            if not is_text(name) or not place._handle.contains(name):
                raise place._missing(path, name)
            place = place._entry(name)
        return place

    def _require_writable(self) -> None:
        if self._handle.is_read_only:
            raise TypeError("what is in a file is read-only; make a Dictionary of it")

    def _set(self, name: str, value: Any) -> None:
        entry = as_entry(value)
        if isinstance(entry, Array):
            self._handle.set_array(name, entry._handle)
        else:
            self._handle.set_dictionary(name, entry._handle)

    def _container_of(self, path: str) -> tuple[Dictionary, str]:
        group, _, name = path.lstrip("/").rpartition("/")
        container = self._find(group) if group else self
        if not isinstance(container, Dictionary):
            raise KeyError(f"there is no entry {path!r}: {group!r} is an array")
        container._require_writable()
        return container, require_name(name)

    def __getitem__(self, path: str) -> Any:
        if not isinstance(path, str):
            raise KeyError(path)
        return self._find(path)

    def __setitem__(self, path: str, value: Any) -> None:
        container, name = self._container_of(path if isinstance(path, str) else require_name(path))
        container._set(name, value)

    def __delitem__(self, path: str) -> None:
        _ = self[path]
        container, name = self._container_of(path)
        container._handle.remove(name)

    def __contains__(self, path: object) -> bool:
        try:
            return isinstance(path, str) and self._find(path) is not None
        except KeyError:
            return False

    def __iter__(self) -> Iterator[str]:
        return iter(self._handle.names())

    def __len__(self) -> int:
        return len(self._handle.names())

    def __repr__(self) -> str:
        from quillon import _display

        return _display.dictionary_text(self)

    def _repr_html_(self) -> str:
        from quillon import _display

        return _display.dictionary_html(self)

    def __copy__(self) -> Dictionary:
        return Dictionary._of(self._handle.copy(self.name))

    def __deepcopy__(self, memo: dict[int, Any]) -> Dictionary:
        import copy

        entries = {name: copy.deepcopy(value, memo) for name, value in self.items()}
        return _rebuild(entries, *self._outline())

    def _outline(self) -> tuple[Any, ...]:
        return self.name, self.description, dict(self.attrs), self._handle.coordinates

    def __reduce__(self) -> tuple[Any, ...]:
        return _rebuild, (dict(self.items()), *self._outline())

    def copy(self) -> Dictionary:
        """Copy the dictionary and those in it; values are shared.

        Examples
        --------
        >>> import quillon
        >>> d = quillon.Dictionary({"a": [1]})
        >>> c = d.copy()
        >>> del c["a"]
        >>> list(d), list(c)
        (['a'], [])
        """
        return self.__copy__()

    def to_table(
        self,
        index: str | Sequence[str] | None = None,
        *,
        variables: Sequence[str] | None = None,
        select: Mapping[str, Any] | None = None,
    ) -> Table:
        """Make a table of the arrays.

        Parameters
        ----------
        index : sequence of str, optional
            Names of dimensions that become rows, the first varying fastest; the others are spread
            over columns. By default the dimensions of the array with the most values, less those
            without coordinates and of at most 16 positions.
        variables : sequence of str, optional
            Shell patterns of names; all arrays by default.
        select : mapping, optional
            For dimensions an index, a slice, or a coordinate: integers and slices of them are
            positions, everything else coordinates, slices of which have both ends.

        Returns
        -------
        Table

        Raises
        ------
        ExportError
            For names that match nothing, parts that are empty, and a dimension of two sizes.

        Examples
        --------
        >>> import quillon
        >>> area = quillon.Array([[1, 2], [3, 4]], ["time", "label"], unit="um2")
        >>> print(quillon.Dictionary({"area": area}).to_table(["label"]))
        label  area[time=0]  area[time=1]
                        um2           um2
            0             1             3
            1             2             4
        [2 rows x 3 columns]
        """
        from quillon._tables import Table

        return Table._of(self, index, variables, select)

    def to_pandas(
        self,
        index: str | Sequence[str] | None = None,
        *,
        variables: Sequence[str] | None = None,
        select: Mapping[str, Any] | None = None,
    ) -> pandas.DataFrame:
        """Make a DataFrame of the arrays: ``to_table(...).to_pandas()``.

        Examples
        --------
        >>> import quillon
        >>> quillon.Dictionary({"area": quillon.Array([212, 96], ["label"])}).to_pandas()
               area
        label
        0       212
        1        96
        """
        return self.to_table(index, variables=variables, select=select).to_pandas()

    def to_xarray(self) -> xarray.Dataset:
        """Give it to xarray.

        Raises
        ------
        ValueError
            For a dictionary in it.
        ExportError
            For a dimension of two sizes.

        Examples
        --------
        >>> import quillon
        >>> dict(quillon.Dictionary({"area": quillon.Array([212], ["label"])}).to_xarray().sizes)
        {'label': 1}
        """
        from quillon import _xarray

        return _xarray.dataset(self)


def _rebuild(
    entries: Mapping[str, Any],
    name: str,
    description: str,
    attrs: Mapping[str, Any],
    coordinates: set[str],
) -> Dictionary:
    """What a pickle calls."""
    dictionary = Dictionary(entries, name=name, description=description, attrs=attrs)
    dictionary._handle.coordinates = coordinates
    return dictionary
