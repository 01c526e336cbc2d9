"""The table that quillon writes of a file as CSV, beside xarray's data frame of it.

usage: csv_equals_xarray.py QUILLON FILE DIMENSION...

The dimensions are those of the file, the slowest first. Values, missing values, times and the order
of the rows have to be the same.
"""

import io
import subprocess
import sys

import numpy
import pandas
import xarray


def text_of(value):
    """What xarray has, as the CSV writes it."""
    if value is None or value is pandas.NaT or value != value:
        return ""
    if isinstance(value, (bool, numpy.bool_)):
        return "true" if value else "false"
    if isinstance(value, pandas.Timestamp):
        return value.isoformat()
    if isinstance(value, bytes):
        return value.decode()
    return str(value)


def same(ours, theirs, isSingle):
    if ours == theirs:
        return True
    try:
        if isSingle:  # xarray unpacks in single precision
            return numpy.isclose(float(ours), float(theirs), rtol=1e-6, atol=0)
        return float(ours) == float(theirs)
    except ValueError:
        pass
    try:
        return pandas.Timestamp(ours) == pandas.Timestamp(theirs)
    except ValueError:
        return False


quillon, file, *dimensions = sys.argv[1:]
written = subprocess.run(
    [quillon, "table", file, "--format", "csv", "--index", ",".join(reversed(dimensions))],
    check=True, stdout=subprocess.PIPE, universal_newlines=True).stdout
ours = pandas.read_csv(io.StringIO(written), dtype=str, keep_default_na=False)
times = []  # that xarray has as numbers only
try:
    data = xarray.open_dataset(file)
except ValueError:
    data = xarray.open_dataset(file, decode_times=False)
    times = [name for name in data.variables if " since " in data[name].attrs.get("units", "")]
theirs = data.to_dataframe(dim_order=dimensions).reset_index()
if sorted(ours.columns) != sorted(theirs.columns):
    sys.exit(f"columns: {list(ours.columns)} and {list(theirs.columns)}")
if len(ours) != len(theirs):
    sys.exit(f"rows: {len(ours)} and {len(theirs)}")
for column in theirs.columns.drop(times):
    isSingle = data[column].dtype == numpy.float32
    for row, (mine, other) in enumerate(zip(ours[column], theirs[column].astype(object))):
        if not same(mine, text_of(other), isSingle):
            sys.exit(f"{column}, row {row}: {mine!r} and {text_of(other)!r}")
