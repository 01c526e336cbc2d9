"""Objects of xarray, as ours and back."""

from __future__ import annotations

from collections.abc import Callable, Mapping
from typing import Any

import numpy as np

from quillon._array import Array
from quillon._dictionary import Dictionary, require_name
from quillon._errors import ExportError
from quillon._optional import require

__all__ = ["data_array", "dataset", "from_xarray"]


def _taken(attrs: Mapping[str, Any], name: str, wanted: bool = True) -> tuple[str, dict[str, Any]]:
    """The text of an attribute that has a place of its own, and all the others."""
    text = attrs.get(name)
    if not (wanted and isinstance(text, str) and text):
        return "", dict(attrs)
    return text, {key: value for key, value in attrs.items() if key != name}


def _array_of(variable: Any, name: str) -> Array:
    unit, attrs = _taken(variable.attrs, "units", variable.dtype.kind not in "mM")
    description, attrs = _taken(attrs, "long_name")
    dims = [str(dim) for dim in variable.dims]
    remarks = {"name": name, "unit": unit, "description": description, "attrs": attrs}
    if variable.chunks is None or not dims or variable.dtype.kind not in "biufcmM":
        return Array(variable.values, dims, **remarks)
    data = variable.data
    return Array.lazy(
        lambda start, stop: np.asanyarray(data[start:stop]),
        variable.shape,
        dims,
        dtype=variable.dtype,
        **remarks,
    )


def _name_of(name: Any) -> str:
    return "" if name is None else str(name)


def from_xarray(data: Any, *, name: str = "") -> Array | Dictionary:
    """Take a DataArray as an array, a Dataset as a dictionary.

    Parameters
    ----------
    data : xarray.DataArray or xarray.Dataset
        Coordinates come along; what dask computes stays lazy.
    name : str, optional
        What to call it; by default as it is called.

    Returns
    -------
    Array or Dictionary
        With the attributes ``units`` and ``long_name`` (of a Dataset ``title``) as unit and
        description.

    Examples
    --------
    >>> import quillon, xarray
    >>> data = xarray.DataArray([1.5, 2.5], dims="time", attrs={"units": "K"})
    >>> quillon.from_xarray(data).unit
    'K'
    """
    xarray = require("xarray")
    if isinstance(data, xarray.DataArray):
        array = _array_of(data.variable, name or _name_of(data.name))
        array._set_coordinates({str(n): _array_of(c.variable, str(n)) for n, c in data.coords.items()})
        return array
    if not isinstance(data, xarray.Dataset):
        raise TypeError(f"a DataArray or a Dataset is wanted, not a {type(data).__name__}")
    title, attrs = _taken(data.attrs, "title")
    dictionary = Dictionary(name=name, description=title, attrs=attrs)
    for key, variable in data.variables.items():
        dictionary._set(require_name(str(key)), _array_of(variable, str(key)))
    dictionary._handle.coordinates = {str(key) for key in data.coords}
    return dictionary


def _attrs_of(array: Array) -> dict[str, Any]:
    own = {"units": array.unit, "long_name": array.description}
    return {**array.attrs, **{name: text for name, text in own.items() if text}}


def _variable(array: Array, values: Any = None) -> Any:
    given = array.values if values is None else values
    return require("xarray").Variable(array.dims, given, _attrs_of(array))


def data_array(array: Array) -> Any:
    """A DataArray of an array."""
    coordinates = {name: _variable(found) for name, found in array._coordinates().items()}
    variable = _variable(array)
    fitting = {
        name: c for name, c in coordinates.items() if set(c.dims) <= set(variable.dims)
    }
    return require("xarray").DataArray(
        variable.data, fitting, variable.dims, array.name or None, variable.attrs
    )


def _require_sizes(dictionary: Dictionary) -> None:
    sizes: dict[str, int] = {}
    for name, entry in dictionary.items():
        if not isinstance(entry, Array):
            raise ValueError(f"{name!r} is a dictionary, which no Dataset holds")
        for dim, size in zip(entry.dims, entry.shape):
            if sizes.setdefault(dim, size) != size:
                raise ExportError(f"the dimension {dim!r} has the sizes {sizes[dim]} and {size}")


def dataset(dictionary: Dictionary, values_of: Callable[[str, Array], Any] = lambda *_: None) -> Any:
    """A Dataset of a dictionary, of its values or what `values_of` gives instead."""
    _require_sizes(dictionary)
    known = dictionary._handle.coordinates
    data, coordinates = {}, {}
    for name, array in dictionary.items():
        is_coordinate = name in known or array.dims == (name,)
        (coordinates if is_coordinate else data)[name] = _variable(array, values_of(name, array))
    title = {"title": dictionary.description} if dictionary.description else {}
    return require("xarray").Dataset(data, coordinates, {**title, **dictionary.attrs})
