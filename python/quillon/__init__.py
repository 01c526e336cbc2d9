"""Measurement results: arrays with units, compared, made tables of, read from and written to files.

Examples
--------
>>> import quillon
>>> cells = quillon.Dictionary({"area": quillon.Array([212, 96, 154], ["label"], unit="um2")})
>>> print(cells.to_table())
label  area
        um2
    0   212
    1    96
    2   154
[3 rows x 2 columns]
>>> quillon.compare(cells, {"area": [212, 96, 155]})
/area: 1 of 3 values differ; the largest delta is 1 at label=2: 154 and 155
"""

from __future__ import annotations

import importlib
from typing import Any

from quillon._errors import Error, ExportError, FileError, InvalidCall  # before what throws them
from quillon import _core
from quillon._array import Array
from quillon._compare import Difference, Report, compare
from quillon._dictionary import Dictionary
from quillon._tables import Table

__all__ = [
    "Array",
    "Dictionary",
    "Difference",
    "Error",
    "ExportError",
    "FileError",
    "InvalidCall",
    "Report",
    "Table",
    "compare",
    "from_arrow",
    "from_pandas",
    "from_xarray",
]

if hasattr(_core, "open_file"):
    from quillon._files import File, open, save

    __all__ += ["File", "open", "save"]

__version__: str = _core.version

_LATER = {"from_arrow": "_arrow", "from_xarray": "_xarray", "from_pandas": "_pandas"}
_MODULES = ("dask", "object_model", "testing", "xarray")

for _public in __all__[:]:
    if _public in globals():
        globals()[_public].__module__ = "quillon"


def __getattr__(name: str) -> Any:
    if name in _LATER:
        return getattr(importlib.import_module(f"quillon.{_LATER[name]}"), name)
    if name in _MODULES:
        return importlib.import_module(f"quillon.{name}")
    raise AttributeError(f"module 'quillon' has no attribute '{name}'")


def __dir__() -> list[str]:
    return sorted([*__all__, *_MODULES])
