"""Decodes files with quillon's reader and with xarray, and compares values, missing ones and times.

Usage: XarrayTest.py PROGRAM FILE...

PROGRAM prints what the reader makes of a file (Decoded.cpp). Beside the files, some are made here.
"""

import json
import math
import os
import subprocess
import sys
import tempfile
import warnings

import cftime
import netCDF4
import numpy
import xarray

warnings.simplefilter("ignore")

CALENDARS = [
    "standard", "gregorian", "proleptic_gregorian", "noleap", "365_day", "360_day", "julian",
]
UNITS = [
    "days since 1850-01-01", "hours since 1582-10-01 06:00:00", "seconds since 1970-01-01T00:00:00Z",
    "minutes since 2000-02-28 12:30", "days since 5-1-1", "milliseconds since 1999-12-30 23:59:59.5",
    "hours since 2000-01-01 00:00:00 +01:30",
]
# Without halves of microseconds, which are rounded in other ways.
NUMBERS = [0, 1, 0.5, 0.1, -1.25, 59, 365.25, 3652.125, 20000.125]


def times_cdl():
    variables, data = "", ""
    for c, calendar in enumerate(CALENDARS):
        for u, units in enumerate(UNITS):
            name = f"t_{c}_{u}"
            variables += f'double {name}(x); {name}:units = "{units}"; {name}:calendar = "{calendar}";\n'
            data += f"{name} = {', '.join(map(str, NUMBERS))};\n"
    # cftime stumbles over a missing time; pandas does not.
    variables += 'double missing(x); missing:units = "days since 2000-01-01"; missing:_FillValue = 1.;'
    data += f"missing = {', '.join(map(str, NUMBERS))};\n"
    return f"netcdf a {{ dimensions: x = {len(NUMBERS)}; variables: {variables} data: {data} }}"


def bounds_cdl():
    dimensions, variables, data = "n = 2;", "", ""
    for c, calendar in enumerate(CALENDARS):
        for o, own in enumerate(("", 'B:units = "hours since 1999-12-30";', 'B:calendar = "360_day";')):
            name = f"t_{c}_{o}"
            bounds = f"b_{c}_{o}"
            dimensions += f" {name} = 1;"
            variables += f'int {name}({name}); {name}:units = "days since 2000-01-01";\n'
            variables += f'{name}:calendar = "{calendar}"; {name}:bounds = "{bounds}";\n'
            variables += f"int {bounds}({name}, n); {own.replace('B', bounds)}\n"
            data += f"{name} = 0; {bounds} = 59, 1464;\n"
    return f"netcdf a {{ dimensions: {dimensions} variables: {variables} data: {data} }}"


TYPES = ["byte", "ubyte", "short", "ushort", "int", "uint", "int64", "float", "double"]
SUFFIXES = {"byte": "b", "ubyte": "UB", "short": "s", "ushort": "US", "int": "", "uint": "U",
            "int64": "LL", "float": ".f", "double": "."}
PACKINGS = [
    "", "V:scale_factor = 0.01; V:add_offset = 273.15;", "V:scale_factor = 0.25f;",
    "V:add_offset = 0.5f; V:scale_factor = 0.125f;", "V:add_offset = 10.;",
]


def numbers_cdl():
    variables, data = "", ""
    for kind in TYPES:
        for p, packing in enumerate(PACKINGS):
            for fill in (False, True):
                if kind == "int64" and packing == "" and fill:
                    continue  # stays exact here, and becomes a double there
                name = f"v_{kind}_{p}_{int(fill)}"
                variables += f"{kind} {name}(x); {packing.replace('V', name)}\n"
                if fill:
                    variables += f"{name}:_FillValue = 7{SUFFIXES[kind]};\n"
                    variables += f"{name}:missing_value = 9{SUFFIXES[kind]};\n"
                data += f"{name} = 1, 2, 7, 9, 100;\n"
    variables += 'byte counts(x); counts:_Unsigned = "true"; counts:_FillValue = -1b;\n'
    data += "counts = -1, -2, 0, 127, -128;\n"
    variables += 'byte flags(x); flags:dtype = "bool";\n'
    data += "flags = 0, 1, 0, 1, 1;\n"
    variables += 'string words(x); char letters(x, n);\n'
    data += 'words = "", "a", "bc", "ü", "e"; letters = "", "a", "bc", "ü", "e";\n'
    return f"netcdf a {{ dimensions: x = 5; n = 3; variables: {variables} data: {data} }}"


def groups_of(dataset, path=""):
    yield path or "/"
    for name, group in dataset.groups.items():
        yield from groups_of(group, f"{path}/{name}")


def iso(value):
    """The time as the program prints it; None for a missing one."""
    if isinstance(value, numpy.datetime64):
        if numpy.isnat(value):
            return None
        text = str(value.astype("datetime64[us]"))
    else:
        if value is None or value != value:
            return None
        text = (f"{value.year:04d}-{value.month:02d}-{value.day:02d}T{value.hour:02d}:"
                f"{value.minute:02d}:{value.second:02d}.{value.microsecond:06d}")
    return text.rstrip("0").rstrip(".") if "." in text else text


def is_time(variable):
    if variable.dtype.kind == "M":
        return True
    values = variable.values.ravel()
    return variable.dtype == object and any(hasattr(value, "calendar") for value in values)


def default_fill(variable):
    """netCDF's own fill value, which xarray takes for a value."""
    if variable.dtype not in ("f4", "f8") or "_FillValue" in variable.ncattrs():
        return None
    return netCDF4.default_fillvals[variable.dtype.str[1:]]


def is_same(ours, theirs, tolerance):
    if ours is None:
        return theirs is None or theirs != theirs
    if isinstance(ours, (str, bool)):
        return ours == theirs
    return theirs == ours or math.isclose(ours, theirs, rel_tol=tolerance)


def compare(ours, variable, stored, path):
    """The first difference as a sentence; None for the same."""
    if ours["dims"] != list(variable.dims):
        return f"{path}: dimensions {ours['dims']} and {list(variable.dims)}"
    values = variable.values.ravel()
    times = is_time(variable)
    if times != (ours["kind"] == "time"):
        return f"{path}: {ours['kind']} and {variable.dtype}"
    if len(values) != len(ours["values"]):
        return f"{path}: {len(ours['values'])} and {len(values)} values"
    fill = default_fill(stored)
    tolerance = 1e-6 if ours["kind"] == "float32" or variable.dtype == "float32" else 1e-13
    for k, (mine, value) in enumerate(zip(ours["values"], values)):
        theirs = iso(value) if times else value.item() if hasattr(value, "item") else value
        if isinstance(theirs, bytes):
            theirs = theirs.decode()
        if fill is not None and theirs == fill:
            theirs = None
        if not is_same(mine, theirs, tolerance):
            return f"{path}[{k}]: {mine!r} and {theirs!r}"
    return None


def open_decoded(path, group):
    """What xarray makes of a group; of times since the year 0, which it refuses, what cftime does."""
    try:
        return xarray.open_dataset(path, group=group, engine="netcdf4")
    except ValueError:
        decoded = xarray.open_dataset(path, group=group, engine="netcdf4", decode_times=False)
    for name, variable in decoded.variables.items():
        units = variable.attrs.get("units", "")
        if " since " in units:
            word, since = units.split(" since ")  # cftime knows the plural only
            units = word.rstrip("s") + "s since " + since
            times = cftime.num2date(variable.values, units, "standard", has_year_zero=True)
            decoded[name] = xarray.Variable(variable.dims, times)
    return decoded


def differences(program, path):
    printed = json.loads(subprocess.run([program, path], check=True, stdout=subprocess.PIPE).stdout)
    found, compared = [], 0
    with netCDF4.Dataset(path) as raw:
        groups = list(groups_of(raw))
        for group in groups:
            with open_decoded(path, group) as decoded:
                for name, variable in decoded.variables.items():
                    place = (group.rstrip("/") + "/" + name)
                    difference = compare(printed[place], variable, raw[place], place)
                    found += [f"{path}{difference}"] if difference else []
                    compared += 1
    if compared != len(printed):
        found.append(f"{path}: {len(printed)} variables here, {compared} in xarray")
    return found, compared


def main(program, files):
    failures, compared = [], 0
    with tempfile.TemporaryDirectory() as directory:
        for name, cdl in (("times", times_cdl()), ("bounds", bounds_cdl()), ("numbers", numbers_cdl())):
            source = os.path.join(directory, name + ".cdl")
            with open(source, "w", encoding="utf-8") as out:
                out.write(cdl)
            subprocess.run(["ncgen", "-4", "-o", source + ".nc", source], check=True)
            files = files + [source + ".nc"]
        for path in files:
            found, count = differences(program, path)
            failures += found
            compared += count
    print("\n".join(failures))
    print(f"{compared} variables of {len(files)} files compared, {len(failures)} differ")
    return 1 if failures or compared == 0 else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
