"""Compare a variable of two netCDF files on as many processes as MPI has, each its share of the rows.

    mpirun -n 4 python3 mpi_compare.py FIRST.nc SECOND.nc VARIABLE
"""

import functools
import sys

from mpi4py import MPI

import quillon
from quillon import dask as parts

VALUES_AT_ONCE = 5_000_000

comm = MPI.COMM_WORLD
name = sys.argv[3]
first, second = (quillon.open(path)[name] for path in sys.argv[1:3])
share = -(-first.shape[0] // comm.size)
rows = max(1, min(share, VALUES_AT_ONCE * first.shape[0] // first.size))


def figures_from(start):
    part = slice(start, start + rows)
    place = [start] + [0] * (first.ndim - 1)
    return parts.figures(first[part], second[part], place, first.shape)


starts = range(comm.rank * rows, first.shape[0], comm.size * rows)
mine = functools.reduce(parts.merge, map(figures_from, starts), parts.NOTHING)
total = comm.reduce(mine, op=parts.merge)
if comm.rank == 0:
    print(parts.report({name: first}, {name: second}, {f"/{name}": total}))
