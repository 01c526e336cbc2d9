"""The errors of this package. Their sentences come from the C++ libraries."""

__all__ = ["Error", "ExportError", "FileError", "InvalidCall"]


class Error(Exception):
    """What all errors of this package's own are.

    Besides them, a missing entry is a ``KeyError``, a position outside an ``IndexError``, a bad
    argument a ``ValueError``, and a dtype that nothing holds a ``TypeError``.
    """


class InvalidCall(Error):
    """An operation that the object model does not allow on this object."""


class FileError(Error, OSError):
    """A file that cannot be opened, read or written."""

    def __str__(self) -> str:
        return str(self.args[0]) if len(self.args) == 1 else super().__str__()


class ExportError(Error, ValueError):
    """A dictionary that cannot become a table, a Dataset or a file."""


for _error in (Error, InvalidCall, FileError, ExportError):
    _error.__module__ = "quillon"
