"""Comparison in blocks on dask: a task reads and compares a block, and where it fails, it fails alone."""

from __future__ import annotations

import functools
import itertools
import math
import uuid
from collections.abc import Iterable, Iterator, Mapping, Sequence
from typing import Any, NamedTuple

from quillon import _core
from quillon._array import Array
from quillon._errors import FileError
from quillon._optional import require

__all__ = ["Pair", "Partial", "Rule", "compute"]

FAN_IN = 16
"""So many partial results are merged by one task."""

AT_ONCE = 100_000
"""So many blocks are given to dask at a time, as each takes memory of its scheduler."""


class Partial(NamedTuple):
    """What is known of some blocks."""

    figures: _core.Figures
    failures: tuple[tuple[Sequence[int], str], ...] = ()
    """Where the blocks begin that could not be compared, and why."""


class Failure(NamedTuple):
    """Why there is no value."""

    reason: str


class Rule(NamedTuple):
    """How values are compared."""

    atol: float
    rtol: float
    equal_nan: bool
    largest: int


class Pair(NamedTuple):
    """Two arrays of dask's with the same chunks."""

    first: Any
    second: Any
    dims: Sequence[str]
    rule: Rule


class Place(NamedTuple):
    """Where a block lies."""

    start: Sequence[int]
    extent: Sequence[int]
    shape: Sequence[int]
    dims: Sequence[str]

    def __str__(self) -> str:
        parts = (f"{d}={s}:{s + n}" for d, s, n in zip(self.dims, self.start, self.extent))
        return f"the chunk {', '.join(parts)}" if self.dims else "its value"


class Group:
    """The part of dask's graph that gives `key`, of what `needs` names."""

    __slots__ = ("graph", "key", "needs")

    def __init__(self, graph: Mapping[Any, Any], key: Any, needs: Sequence[Any]) -> None:
        self.graph, self.key, self.needs = graph, key, needs

    def __reduce__(self) -> tuple[Any, ...]:
        return Group, (self.graph, self.key, self.needs)


def figures_of(first: Any, second: Any, place: Place, rule: Rule) -> _core.Figures:
    """The figures of two blocks of numbers."""
    handles = (Array(block)._handle for block in (first, second))
    return _core.figures(*handles, list(place.start), list(place.shape), *rule)


def _file_of(value: Any) -> str:
    """The file that a lazy array of xarray's is read from; "" where there is none."""
    if isinstance(value, (tuple, list)):
        return next(filter(None, map(_file_of, value)), "")
    while not hasattr(value, "datastore") and hasattr(value, "array"):
        value = value.array
    return str(getattr(getattr(value, "datastore", None), "_filename", None) or "")


def _sources(graph: Mapping[Any, Any]) -> list[Any]:
    """What the first task that fails is made of; nothing where none does now."""
    core = require("dask.core")
    done: dict[Any, Any] = {}
    for key in core.toposort(graph):
        needed = {other: done[other] for other in core.get_dependencies(graph, key)}
        try:
            done[key] = core.quote(core.get({**needed, key: graph[key]}, key))
        except Exception:  # whatever a reader raises
            return [graph[key], *needed.values()]
    return []


def _sentence(error: Exception, graph: Mapping[Any, Any]) -> str:
    if isinstance(error, FileError):
        return str(error)
    sentence = f"{type(error).__name__}: {error}"
    file = _file_of(_sources(graph))
    return f"Cannot read '{file}': {sentence}" if file and file not in sentence else sentence


def computed(group: Group, *values: Any) -> Any:
    """The value of a group, or a Failure: where it fails, or what it needs failed."""
    core = require("dask.core")
    failed = next((value for value in values if isinstance(value, Failure)), None)
    if failed is not None:
        return failed
    graph = {**group.graph, **{key: core.quote(value) for key, value in zip(group.needs, values)}}
    try:
        return core.get(graph, group.key)
    except Exception as error:  # whatever a reader raises
        return Failure(_sentence(error, graph))


def partial_of(place: Place, group: Group, *values: Any) -> Partial:
    """What is found of a block."""
    found = computed(group, *values)
    if isinstance(found, Failure):
        return Partial(_core.Figures(), ((tuple(place.start), f"{place}: {found.reason}"),))
    return Partial(found)


def _both(a: Partial, b: Partial) -> Partial:
    return Partial(_core.merge(a.figures, b.figures), tuple(sorted(a.failures + b.failures)))


def total(parts: Sequence[Partial]) -> Partial:
    """All of them as one."""
    return functools.reduce(_both, parts, Partial(_core.Figures()))


def _places(pair: Pair, box: Sequence[slice]) -> Iterator[tuple[tuple[int, ...], Place]]:
    """For each block of a box its index within the box and where it lies."""
    chunks = pair.first.chunks
    starts = [list(itertools.accumulate(sizes, initial=0)) for sizes in chunks]
    for index in itertools.product(*(range(part.start, part.stop) for part in box)):
        start = tuple(starts[k][at] for k, at in enumerate(index))
        extent = tuple(chunks[k][at] for k, at in enumerate(index))
        within = tuple(at - part.start for at, part in zip(index, box))
        yield within, Place(start, extent, pair.first.shape, pair.dims)


def boxes(counts: Sequence[int], most: int) -> Iterator[tuple[slice, ...]]:
    """Boxes of at most `most` blocks each, which make up a grid of so many, in its order."""
    if not counts:
        yield ()
        return
    whole = tuple(slice(0, count) for count in counts[1:])
    step = most // max(1, math.prod(counts[1:]))
    for first in range(0, counts[0], max(1, step)):
        part = slice(first, min(first + max(1, step), counts[0]))
        yield from ((part, *rest) for rest in (boxes(counts[1:], most) if step == 0 else [whole]))


def _owners(order: Sequence[Any], dependents: Mapping[Any, Any], roots: Iterable[Any]) -> dict[Any, Any]:
    """For each key the one in whose task it is computed: its own, unless only one other needs it."""
    owners = {key: key for key in roots}
    for key in reversed(order):
        if key not in owners:
            users = {owners[user] for user in dependents[key]}
            owners[key] = users.pop() if len(users) == 1 else key
    return owners


def _is_known(value: Any) -> bool:
    """Whether workers have the value already: a Future of distributed's, which only a graph can name."""
    return type(value).__module__.startswith("distributed.")


def _task(group: Group, place: Place | None) -> Any:
    """The task of a group, which is that of a block where it has a place."""
    if _is_known(group.graph[group.key]):
        return group.graph[group.key]
    return (*((computed,) if place is None else (partial_of, place)), group, *group.needs)


def _groups(graph: Mapping[Any, Any], roots: Iterable[Any]) -> dict[Any, Group]:
    """The graph in groups, by the names of their values."""
    core = require("dask.core")
    dependencies, dependents = core.get_deps(graph)
    known = [key for key, value in graph.items() if _is_known(value)]
    owners = _owners(core.toposort(graph, dependencies=dependencies), dependents, [*roots, *known])
    members: dict[Any, dict[Any, Any]] = {}
    needs: dict[Any, dict[Any, None]] = {}
    for key, task in graph.items():
        owner = owners[key]
        members.setdefault(owner, {})[key] = task
        outside = (other for other in dependencies[key] if owners[other] != owner)
        needs.setdefault(owner, {}).update(dict.fromkeys(outside))
    return {owner: Group(some, owner, list(needs[owner])) for owner, some in members.items()}


def _merging(parts: list[Any], name: str) -> Iterator[tuple[Any, Any]]:
    """Tasks that merge all parts, the last one of which gives the total."""
    level = 0
    while len(parts) > 1 or level == 0:
        some = [parts[k : k + FAN_IN] for k in range(0, len(parts), FAN_IN)] or [[]]
        parts = [(name, level, k) for k in range(len(some))]
        yield from zip(parts, ((total, inputs) for inputs in some))
        level += 1


def _within(data: Any, box: tuple[slice, ...]) -> Any:
    """The blocks of a box."""
    is_whole = all(part.stop - part.start == count for part, count in zip(box, data.numblocks))
    return data if is_whole else data.blocks[box]


def _partial(pair: Pair, box: tuple[slice, ...]) -> Any:
    """The Partial of the blocks of a box, yet to be computed."""
    token = uuid.uuid4().hex
    places = dict(_places(pair, box))
    first, second = require("dask").optimize(_within(pair.first, box), _within(pair.second, box))
    graph = {**first.__dask_graph__(), **second.__dask_graph__()}
    blocks = {(f"compare-{token}", *index): index for index in places}
    for key, index in blocks.items():
        sides = (first.name, *index), (second.name, *index)
        graph[key] = (figures_of, *sides, places[index], pair.rule)
    groups = _groups(graph, blocks)
    tasks = {key: _task(group, places.get(blocks.get(key))) for key, group in groups.items()}
    tasks.update(_merging(list(blocks), f"merge-{token}"))
    return require("dask.delayed").Delayed(next(reversed(tasks)), tasks)


def _portions(pairs: Mapping[str, Pair]) -> Iterator[list[tuple[str, Any]]]:
    """Paths and what is to be computed for them, some AT_ONCE blocks at a time."""
    portion, blocks = [], 0
    for path, pair in pairs.items():
        for box in boxes(pair.first.numblocks, AT_ONCE):
            portion.append((path, _partial(pair, box)))
            blocks += math.prod(part.stop - part.start for part in box)
            if blocks >= AT_ONCE:
                yield portion
                portion, blocks = [], 0
    yield portion


def compute(pairs: Mapping[str, Pair]) -> dict[str, Partial]:
    """What is found of the arrays of each path, computed by dask."""
    found: dict[str, Partial] = {}
    for portion in _portions(pairs):
        results = require("dask").compute(*(delayed for _, delayed in portion))
        for (path, _), partial in zip(portion, results):
            found[path] = total([found[path], partial] if path in found else [partial])
    return found
