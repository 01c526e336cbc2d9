"""What is imported where it is asked for."""

from __future__ import annotations

import importlib
from typing import Any

__all__ = ["require"]


def require(package: str) -> Any:
    """The package, or a sentence on where it is missing."""
    try:
        return importlib.import_module(package)
    except ModuleNotFoundError as error:
        raise ImportError(
            f"this needs {package}, which is not installed; install python3-{package} or "
            f"'pip install {package}'"
        ) from error
