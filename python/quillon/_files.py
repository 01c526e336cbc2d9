"""Files."""

from __future__ import annotations

import os
import subprocess
import sys
from typing import Any

import numpy as np

from quillon import _core
from quillon._array import Array
from quillon._dictionary import Dictionary, as_entry
from quillon._errors import ExportError, FileError

__all__ = ["File", "open", "save"]


class File(Dictionary):
    """An open file as a dictionary. It is read-only, and read when values are asked for.

    It is made by `quillon.open`. Entries that live longer keep it open, unless it is closed.

    Attributes
    ----------
    path : str
        The file.
    title : str
        The file's attribute ``title``.
    skipped : list of (str, str)
        The paths of what no array holds, and why.
    """

    def __init__(self, file: _core.File, path: str, group: str, decode: bool) -> None:
        self._file = file
        self._opened = (path, group, decode)
        self._handle = file.root
        self._container = None
        self.path = path
        self.title: str = file.title
        self.skipped: list[tuple[str, str]] = list(file.skipped)

    def _enter_group(self, group: str) -> None:
        if path := group.strip("/"):
            found = self._find(path)
            if not isinstance(found, Dictionary):
                raise KeyError(f"{group!r} in '{self.path}' is an array, not a group")
            self._container, self._handle = Dictionary._of(self._handle), found._handle

    def _unreadable(self) -> list[tuple[str, str]]:
        """What is missing in this group, by name."""
        group = "/" + self._opened[1].strip("/")
        parts = ((path.rpartition("/"), reason) for path, reason in self.skipped)
        return [(p[2], reason) for p, reason in parts if (p[0] or "/") == group]

    def close(self) -> None:
        """End all reading, of entries that live on as well."""
        self._file.close()

    def __enter__(self) -> File:
        return self

    def __exit__(self, *_: Any) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<quillon.File '{self.path}'>\n{super().__repr__()}"

    def __copy__(self) -> Dictionary:
        copy = Dictionary._of(self._handle.copy(self.name), self)
        return copy

    def __reduce__(self) -> tuple[Any, ...]:
        return open_again, self._opened


def open_again(path: str, group: str, decode: bool) -> File:
    """What a pickle calls."""
    return open(path, group, decode=decode)


_READ_ALL = "import sys, quillon._files; quillon._files.read_all(sys.argv[1], sys.argv[2] == '1')"


def read_all(path: str, decode: bool) -> None:
    """Read every value of a file."""
    stack = [open(path, decode=decode)]
    while stack:
        for entry in stack.pop().values():
            if isinstance(entry, Dictionary):
                stack.append(entry)
            elif entry.size:
                _read_in_parts(entry)


def _read_in_parts(array: Any) -> None:
    """Read an array without holding more than some rows of it."""
    if not array.shape:
        array[()]
        return
    rows = max(1, (1 << 22) * array.shape[0] // max(1, array.size))
    for start in range(0, array.shape[0], rows):
        array[start : start + rows]


def _try(path: str, decode: bool) -> None:
    """Read the file in a process of its own, which may crash."""
    folder = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    search = os.pathsep.join([folder, *filter(None, [os.environ.get("PYTHONPATH")])])
    done = subprocess.run(
        [sys.executable, "-c", _READ_ALL, path, str(int(decode))],
        env={**os.environ, "PYTHONPATH": search},
        stdin=subprocess.DEVNULL,
        stdout=subprocess.DEVNULL,
        stderr=subprocess.PIPE,
        check=False,
    )
    if done.returncode < 0:
        raise FileError(f"Cannot read '{path}': reading it crashes (signal {-done.returncode})")
    if done.returncode > 0:
        lines = done.stderr.decode(errors="replace").strip().splitlines() or ["it cannot be read"]
        sentence = lines[-1].partition("FileError: ")[2] or lines[-1]
        raise FileError(sentence)


def _require_storable(dictionary: Dictionary, path: str) -> None:
    """Complain about what no file holds, by name, before anything is written."""
    sizes: dict[str, int] = {}
    for name, entry in dictionary.items():
        if isinstance(entry, Dictionary):
            _require_storable(entry, f"{path}{name}/")
            continue
        if entry.element_type in ("Complex", "Dictionary"):
            raise TypeError(
                f"no file holds elements of the type {entry.element_type}, as {path}{name} has them"
            )
        for dim, size in zip(entry.dims, entry.shape):
            if sizes.setdefault(dim, size) != size:
                raise ExportError(
                    f"the dimension {dim!r} of {path}{name} has the sizes {sizes[dim]} and {size}"
                )


_STORED_UNITS = ("D", "h", "m", "s", "ms", "us", "ns")


def _storable(array: Array) -> Array:
    """The array, its times in a unit that files have."""
    if array.dtype.kind not in "mM":
        return array
    unit, count = np.datetime_data(array.dtype)
    if unit in _STORED_UNITS and count == 1:
        return array
    wanted = "D" if unit in "YMW" else "ns" if unit in ("ps", "fs", "as") else unit
    return array._with_values(array.values.astype(f"{array.dtype.kind}8[{wanted}]"))


def _stored(dictionary: Dictionary) -> Dictionary:
    """The dictionary as a file has it: coordinates are named where they belong."""
    copy = Dictionary(name=dictionary.name, description=dictionary.description, attrs=dictionary.attrs)
    others = dictionary._handle.coordinates
    dims = {name: dictionary[name].dims for name in others if dictionary[name].dims != (name,)}
    for name, entry in dictionary.items():
        if isinstance(entry, Dictionary):
            copy._handle.set_dictionary(name, _stored(entry)._handle)
            continue
        array = _storable(entry)
        beside = sorted(n for n, d in dims.items() if name not in others and set(d) <= set(array.dims))
        if beside and "coordinates" not in array.attrs:
            array = array._with_attrs({**array.attrs, "coordinates": " ".join(beside)})
        copy._handle.set_array(name, array._handle)
    return copy


def save(dictionary: Any, path: str | os.PathLike[str], *, deflate: int | None = None) -> None:
    """Write a dictionary as a netCDF-4 file, whole or not at all.

    Parameters
    ----------
    dictionary : Dictionary or mapping
        With its dimensions, coordinates, units, attributes and groups.
    path : path
        Where to; a file that is there gives way to the new one, or stays where writing fails.
    deflate : int, optional
        How hard numbers are compressed, from 1 to 9; by default not at all.

    Raises
    ------
    FileError
        For a file that cannot be written.
    TypeError
        For complex and nested elements; it names the entry.
    ExportError
        For a dimension of two sizes.

    Examples
    --------
    >>> import os, tempfile, quillon
    >>> path = os.path.join(tempfile.mkdtemp(), "cells.nc")
    >>> quillon.save({"area": quillon.Array([212, 96], ["label"], unit="um2")}, path)
    >>> quillon.open(path)["area"].unit
    'um2'
    """
    entries = as_entry(dictionary)
    if not isinstance(entries, Dictionary):
        raise TypeError(f"a dictionary is saved, not a {type(dictionary).__name__}")
    if deflate is not None and not 0 <= deflate <= 9:
        raise ValueError(f"values are compressed from 1 to 9, not {deflate}")
    _require_storable(entries, "/")
    _core.save_file(_stored(entries)._handle, os.fsencode(path), deflate or 0)


def open(
    path: str | os.PathLike[str], group: str = "/", *, decode: bool = True, trusted: bool = True
) -> File:
    """Open a netCDF file.

    Parameters
    ----------
    path : path
        The file.
    group : str, optional
        The group whose entries it has.
    decode : bool, optional
        Whether values are decoded after the CF conventions, or read as they are stored.
    trusted : bool, optional
        Whether the file is trusted. One that is not is first read in a process of its own, whose
        crash is a `FileError`.

    Returns
    -------
    File

    Raises
    ------
    FileError
        For a file that cannot be read.
    KeyError
        For a group that is not there.

    Examples
    --------
    >>> import quillon
    >>> quillon.open("missing.nc")
    Traceback (most recent call last):
        ...
    quillon.FileError: Cannot read 'missing.nc': there is no such file
    """
    name = os.fspath(path)
    if isinstance(name, bytes):
        name = os.fsdecode(name)
    if not trusted:
        _try(name, decode)
    file = File(_core.open_file(os.fsencode(name), decode), name, group, decode)
    file._enter_group(group)
    return file
