"""Arrays."""

from __future__ import annotations

import types
from collections.abc import Callable, Mapping, Sequence
from typing import TYPE_CHECKING, Any

import numpy as np

from quillon import _core, _numpy
from quillon._arguments import mapping, text

if TYPE_CHECKING:
    import xarray

__all__ = ["Array"]


def _names_of(dims: str | Sequence[str] | None, rank: int) -> list[str]:
    if dims is None:
        return [f"dim_{k}" for k in range(rank)]
    names = [dims] if isinstance(dims, str) else [str(name) for name in dims]
    if len(names) != rank:
        raise ValueError(f"the values have {rank} dimensions, and {len(names)} names were given")
    return [text("each of dims", name) for name in names]


def _made(kind: str, name: str, dims: list[str], values: np.ndarray) -> _core.Array:
    if kind == "numbers":
        return _core.numbers(name, dims, values)
    if kind == "texts":
        return _core.texts(name, dims, values)
    from quillon._dictionary import Dictionary

    elements = [v if isinstance(v, Dictionary) else Dictionary(v) for v in values.ravel()]
    kept = np.empty(values.shape, object)
    kept.ravel()[:] = elements
    return _core.dictionaries(name, dims, kept, [element._handle for element in elements])


def _span(key: Any, size: int) -> tuple[int, int, Any] | None:
    """The positions that a key needs, and what it is among these; None for all."""
    if isinstance(key, slice):
        positions = range(*key.indices(size))
        if not positions:
            return 0, 0, slice(0, 0)
        first, last = min(positions[0], positions[-1]), max(positions[0], positions[-1])
        return first, last + 1, slice(None, None, positions.step)
    if isinstance(key, (int, np.integer)) and not isinstance(key, (bool, np.bool_)):
        position = int(key) + size if key < 0 else int(key)
        if not 0 <= position < size:
            raise IndexError(f"position {key} is outside of a dimension of {size}")
        return position, position + 1, 0
    return None


class Array:
    """Values with named dimensions, a unit and remarks. Its outline never changes.

    Parameters
    ----------
    values : array_like
        Whatever ``numpy.asarray`` takes. Numbers, booleans, times and durations are viewed and
        never copied, whatever their strides; values of half precision, of a foreign byte order and
        that are not aligned, texts and objects are copied. Mappings become dictionaries.
    dims : sequence of str, optional
        A name for each dimension, by default ``dim_0``, ``dim_1``, ... The dimensions "slice",
        "time", "channel" and "label" are axes of these kinds.
    name, unit, description : str, optional
        What it is called, measured in, and for.
    physical_unit : str, optional
        The unit that is measured, where another one is shown; by default `unit`.
    attrs : mapping, optional
        Further remarks: texts, numbers and lists of these.

    Raises
    ------
    ValueError
        For a wrong number of names.
    TypeError
        For a dtype that no array holds.

    Examples
    --------
    >>> import quillon
    >>> area = quillon.Array([212, 96, 154], ["label"], name="area", unit="um2")
    >>> area.dims, area.shape, area.dtype, area.element_type
    (('label',), (3,), dtype('int64'), 'Int')
    >>> area[1:]
    array([ 96, 154])
    """

    __slots__ = ("_handle", "_others", "__weakref__")

    def __init__(
        self,
        values: Any,
        dims: Sequence[str] | None = None,
        *,
        name: str = "",
        unit: str = "",
        physical_unit: str | None = None,
        description: str = "",
        attrs: Mapping[str, Any] | None = None,
    ) -> None:
        kind, array = _numpy.prepared(values)
        self._handle = _made(kind, text("name", name), _names_of(dims, array.ndim), array)
        self._others: Mapping[str, Array] = {}
        self._set_remarks(unit, physical_unit, description, attrs)

    @classmethod
    def lazy(
        cls,
        read: Callable[[int, int], Any],
        shape: Sequence[int],
        dims: Sequence[str] | None = None,
        *,
        dtype: Any = "float64",
        name: str = "",
        unit: str = "",
        physical_unit: str | None = None,
        description: str = "",
        attrs: Mapping[str, Any] | None = None,
        window: int = 8 << 20,
    ) -> Array:
        """Make an array whose values are read when they are needed.

        Parameters
        ----------
        read : callable
            ``read(start, stop)`` gives the values ``[start:stop]`` along the first dimension, about
            `window` bytes in a call. What it raises passes through whatever asked for values.
        shape : sequence of int
            At least one dimension.
        dims, name, unit, physical_unit, description, attrs
            As for `Array`.
        dtype : dtype, optional
            Of numbers, booleans, times or durations.
        window : int, optional
            How many bytes a call gives; a single index may give more.

        Returns
        -------
        Array

        Examples
        --------
        >>> import numpy as np, quillon
        >>> rows = quillon.Array.lazy(lambda start, stop: np.arange(start, stop), [5], dtype="int64")
        >>> rows[1:3]
        array([1, 2])
        """
        extents = [int(extent) for extent in shape]
        if not extents:
            raise ValueError("a lazy array has at least one dimension")
        if min(extents) < 0 or window < 1:
            raise ValueError("extents and windows of lazy arrays are not negative")
        plain = _numpy.lazy_dtype(dtype)
        array = cls._of(
            _core.lazy(text("name", name), _names_of(dims, len(extents)), extents, plain, read, int(window))
        )
        array._set_remarks(unit, physical_unit, description, attrs)
        return array

    def _set_remarks(
        self, unit: str, physical_unit: str | None, description: str, attrs: Mapping[str, Any] | None
    ) -> None:
        self._handle.set_remarks(
            text("unit", unit),
            None if physical_unit is None else text("physical_unit", physical_unit),
            text("description", description),
            dict(mapping("attrs", attrs)),
        )

    @classmethod
    def _of(cls, handle: _core.Array) -> Array:
        array = cls.__new__(cls)
        array._handle = handle
        array._others = {}
        return array

    @property
    def name(self) -> str:
        """What the array is called."""
        return self._handle.name

    @property
    def dims(self) -> tuple[str, ...]:
        """The names of its dimensions, the last of which varies fastest."""
        return self._handle.dims

    @property
    def shape(self) -> tuple[int, ...]:
        """The extent of each dimension."""
        return self._handle.shape

    @property
    def ndim(self) -> int:
        """The number of dimensions."""
        return len(self._handle.shape)

    @property
    def size(self) -> int:
        """The number of values."""
        count = 1
        for extent in self._handle.shape:
            count *= extent
        return count

    @property
    def dtype(self) -> np.dtype:
        """What numpy calls the type of its values; object for texts that are read."""
        source = self._handle.source
        return self._handle.dtype if source is None else source.dtype

    @property
    def unit(self) -> str:
        """The unit that is shown; empty for none."""
        return self._handle.unit

    @property
    def physical_unit(self) -> str:
        """The unit that is measured; empty for none."""
        return self._handle.physical_unit

    @property
    def description(self) -> str:
        """What the array is for."""
        return self._handle.description

    @property
    def attrs(self) -> Mapping[str, Any]:
        """All further remarks, read-only."""
        return types.MappingProxyType(self._handle.attrs)

    @property
    def element_type(self) -> str:
        """The object model's name of what it holds, such as "UInt" or "Double"."""
        return self._handle.element_type

    @property
    def values(self) -> np.ndarray:
        """The very numpy array that it was made of, or its values read now."""
        source = self._handle.source
        return self._read((0,) * self.ndim, self.shape) if source is None else source

    def _read(self, start: Sequence[int], extent: Sequence[int]) -> np.ndarray:
        return self._handle.read(start, extent)

    def __array__(self, dtype: Any = None, copy: bool | None = None) -> np.ndarray:
        values = self.values
        wanted = values.dtype if dtype is None else np.dtype(dtype)
        if copy is False and wanted != values.dtype:
            raise ValueError(f"values of '{values.dtype}' are not to be had as '{wanted}' uncopied")
        return values.astype(wanted, copy=bool(copy))

    def __getitem__(self, key: Any) -> Any:
        source = self._handle.source
        if source is not None:
            return source[key]
        keys = key if isinstance(key, tuple) else (key,)
        if sum(k is Ellipsis for k in keys) == 1:
            at = next(i for i, k in enumerate(keys) if k is Ellipsis)
            keys = keys[:at] + (slice(None),) * (self.ndim - len(keys) + 1) + keys[at + 1 :]
        if len(keys) > self.ndim:
            return self.values[key]  # which says what is wrong
        keys += (slice(None),) * (self.ndim - len(keys))
        spans = [_span(k, size) for k, size in zip(keys, self.shape)]
        if any(span is None for span in spans):
            return self.values[key]
        block = self._read([s[0] for s in spans], [s[1] - s[0] for s in spans])
        return block[tuple(s[2] for s in spans)]

    def __len__(self) -> int:
        if not self.shape:
            raise TypeError("len() of an array without dimensions")
        return self.shape[0]

    def __iter__(self) -> Any:
        return (self[k] for k in range(len(self)))

    def __repr__(self) -> str:
        from quillon import _display

        return _display.array_text(self)

    def _repr_html_(self) -> str:
        from quillon import _display

        return _display.array_html(self)

    def _coordinates(self) -> dict[str, Array]:
        """What the indices of its dimensions stand for, and what else stands beside its values."""
        found = {}
        for k, dim in enumerate(self.dims):
            handle = self._handle.coordinates(k)
            if handle is not None and dim not in found:
                found[dim] = Array._of(handle)
        return {**found, **self._others}

    def _set_coordinates(self, coordinates: Mapping[str, Array]) -> None:
        for k, dim in enumerate(self.dims):
            known = coordinates.get(dim)
            if known is not None and known.dims == (dim,) and len(known) == self.shape[k]:
                self._handle.set_coordinates(k, known._handle)
        self._others = {name: c for name, c in coordinates.items() if c.dims != (name,)}

    def _with_values(self, values: Any) -> Array:
        """Another array of the same outline."""
        return _rebuild(values, *self._outline())

    def _with_attrs(self, attrs: Mapping[str, Any]) -> Array:
        """The same array with other attributes."""
        copy = self.__copy__()
        copy._handle.set_attrs(dict(attrs))
        return copy

    def __copy__(self) -> Array:
        copy = Array._of(self._handle.renamed(self.name))
        copy._others = self._others
        return copy

    def __deepcopy__(self, memo: dict[int, Any]) -> Array:
        import copy

        return _rebuild(copy.deepcopy(self.values, memo), *self._outline())

    def _outline(self) -> tuple[Any, ...]:
        return (
            self.dims,
            self.name,
            self.unit,
            self.physical_unit,
            self.description,
            dict(self.attrs),
            self._coordinates(),
        )

    def __reduce__(self) -> tuple[Any, ...]:
        return _rebuild, (self.values, *self._outline())

    def to_xarray(self) -> xarray.DataArray:
        """Give it to xarray.

        Returns
        -------
        xarray.DataArray
            With the unit as the attribute ``units`` and the description as ``long_name``.

        Examples
        --------
        >>> import quillon
        >>> quillon.Array([1.5], ["time"], unit="K").to_xarray().attrs
        {'units': 'K'}
        """
        from quillon import _xarray

        return _xarray.data_array(self)


def _rebuild(
    values: np.ndarray,
    dims: Sequence[str],
    name: str,
    unit: str,
    physical_unit: str,
    description: str,
    attrs: Mapping[str, Any],
    coordinates: Mapping[str, Array],
) -> Array:
    """What a pickle calls."""
    array = Array(
        values,
        dims,
        name=name,
        unit=unit,
        physical_unit=physical_unit,
        description=description,
        attrs=attrs,
    )
    array._set_coordinates(coordinates)
    return array
