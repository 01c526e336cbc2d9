"""What xarray makes of a file, a line for each variable; compared word for word by WritePeersTest."""

import sys

import numpy
import xarray


def text_of(values):
    if values.dtype.kind == "M":
        values = numpy.datetime_as_string(values, unit="us")
    return " ".join(str(value) for value in numpy.ravel(values).tolist())


def describe(path, group):
    with xarray.open_dataset(path, group=group) as data:
        print("attributes", dict(sorted(data.attrs.items())))
        for name in sorted(data.variables):
            variable = data[name]
            kind = "coordinate" if name in data.coords else "variable"
            print(kind, name, variable.dims, variable.dtype, dict(sorted(variable.attrs.items())))
            print("  along", {axis: name for axis in variable.dims for name in variable[axis].coords})
            print("  values", text_of(variable.values))


describe(sys.argv[1], sys.argv[2] if len(sys.argv) > 2 else None)
