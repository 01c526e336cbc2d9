"""Files whose values are read where dask computes."""

from __future__ import annotations

import functools
import os
import warnings
from collections.abc import Mapping
from typing import Any

import numpy as np

from quillon import _files
from quillon._array import Array
from quillon._dictionary import Dictionary
from quillon._optional import require
from quillon._xarray import dataset

__all__ = ["open"]

VALUES = 5_000_000
"""So many values make a chunk where the file has none: enough that starting a task costs little."""


@functools.lru_cache(maxsize=32)
def _opened(path: str, group: str, decode: bool, *_: Any) -> Any:
    return _files.open(path, group, decode=decode)


def _stamp(path: str) -> tuple[int, int]:
    """What changes with the file; nothing of one that is not there, which opening tells."""
    try:
        status = os.stat(path)
    except OSError:
        return 0, 0
    return status.st_mtime_ns, status.st_size


class Stored:
    """A variable of a file, which is opened by whoever reads it: it pickles as path and name."""

    __slots__ = ("decode", "dtype", "group", "name", "path", "shape")

    def __init__(self, path: str, group: str, decode: bool, name: str, shape: tuple[int, ...], dtype: Any) -> None:
        self.path, self.group, self.decode, self.name = path, group, decode, name
        self.shape, self.dtype = shape, dtype

    @property
    def ndim(self) -> int:
        return len(self.shape)

    def __getitem__(self, key: Any) -> np.ndarray:
        # Each process reads by a file of its own, and anew what was written anew.
        file = _opened(self.path, self.group, self.decode, os.getpid(), *_stamp(self.path))
        return file[self.name][key]

    def __reduce__(self) -> tuple[Any, ...]:
        return Stored, (self.path, self.group, self.decode, self.name, self.shape, self.dtype)

    def __dask_tokenize__(self) -> tuple[Any, ...]:
        return ("quillon.Stored", *self.__reduce__()[1], *_stamp(self.path))


def _chunks(array: Array, stored: list[int], wanted: Any) -> Any:
    """The chunks of an array as dask has them."""
    normalized = require("dask.array.core").normalize_chunks
    own = tuple(stored) if len(stored) == array.ndim else ("auto",) * array.ndim
    if isinstance(wanted, Mapping):
        wanted = tuple(wanted.get(dim, size) for dim, size in zip(array.dims, own))
    before = normalized(own, array.shape) if "auto" not in own else None
    limit = VALUES * array.dtype.itemsize
    return normalized(
        own if wanted is None else wanted, array.shape, limit, array.dtype, previous_chunks=before
    )


def open(
    path: str | os.PathLike[str], group: str = "/", *, chunks: Any = None, decode: bool = True
) -> Any:
    """Open a netCDF file for dask: each task opens the file where it runs, and reads a part of it.

    Parameters
    ----------
    path : path
        The file, which all workers find under this path.
    group : str, optional
        The group whose variables it has; groups in it are opened by their own paths.
    chunks : optional
        As dask takes them, or a mapping of dimensions to sizes. By default the chunks of the file,
        or some 5 million values where it has none; "auto" makes as many of multiples of them.
    decode : bool, optional
        As for `quillon.open`.

    Returns
    -------
    xarray.Dataset
        Of dask's arrays; texts, single values and the coordinates of dimensions are read at once.

    Warns
    -----
    UserWarning
        For each variable that cannot be read, which is left out.

    Raises
    ------
    FileError, KeyError
        As `quillon.open`.

    Examples
    --------
    >>> import os, tempfile, numpy, quillon.dask
    >>> path = os.path.join(tempfile.mkdtemp(), "t.nc")
    >>> quillon.save({"t": quillon.Array(numpy.ones((4, 2)), ["time", "x"])}, path)
    >>> quillon.dask.open(path, chunks={"time": 2})["t"].chunks
    ((2, 2), (2,))
    """
    place = os.path.abspath(os.fspath(path))
    file = _files.open(place, group, decode=decode)
    for name, reason in file._unreadable():
        warnings.warn(f"'{name}' of '{place}' is left out: {reason}", stacklevel=2)
    stored = file._file.chunks(group)
    from_array = require("dask.array").from_array

    def values_of(name: str, array: Array) -> Any:
        if array.dims in ((), (name,)) or array.dtype.kind not in "biufcmM":
            return array.values
        source = Stored(place, group, decode, name, array.shape, array.dtype)
        cut = _chunks(array, stored.get(name, []), chunks)
        meta = np.empty((0,) * array.ndim, array.dtype)
        return from_array(source, cut, inline_array=True, meta=meta)

    arrays = {name: entry for name, entry in file.items() if isinstance(entry, Array)}
    own = Dictionary(arrays, description=file.description, attrs=file.attrs)
    own._handle.coordinates = file._handle.coordinates
    result = dataset(own, values_of)
    result.encoding["source"] = place
    return result
