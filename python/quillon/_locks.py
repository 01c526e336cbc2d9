"""The locks of xarray, whose readers share libnetcdf and libhdf5 with ours."""

from __future__ import annotations

import sys
from typing import Any

__all__ = ["acquire", "release"]


def acquire() -> Any:
    """Wait for xarray's readers, if there are any, and keep them out. Returns what release takes."""
    backend = sys.modules.get("xarray.backends.netCDF4_")
    lock = getattr(backend, "NETCDF4_PYTHON_LOCK", None)
    if lock is not None:
        lock.acquire()
    return lock


def release(lock: Any) -> None:
    """Let xarray's readers in again."""
    if lock is not None:
        lock.release()
