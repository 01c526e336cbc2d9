"""Builds a file once with all its changes, of which each run of the tests chooses one.

A function is compiled as a switch over whole copies of its body, one for each change; a value elsewhere,
in an initialiser for instance, as a choice among values. What else there is has to be built alone.
"""

import re
from bisect import bisect_right
from dataclasses import dataclass
from pathlib import Path

from mutants import Body, Mutant

CHOICE = "QUILLON_VARIANT"

# A function may be called by the compiler, too, which gets what the source says.
_CHOOSER = f"""#ifndef {CHOICE}
#define {CHOICE}
extern "C" char* getenv(const char*) noexcept;
extern "C" int atoi(const char*) noexcept;
inline int quillonChosenVariant() {{
  static const char* const text = getenv("{CHOICE}");
  static const int chosen = text == nullptr ? 0 : atoi(text);
  return chosen;
}}
constexpr int quillonVariant() {{
  return __builtin_is_constant_evaluated() ? 0 : quillonChosenVariant();
}}
#endif
#line 1
"""

_PLACE = re.compile(r"^(\S.*?):(\d+):\d+: (fatal error|error|note|warning):", re.MULTILINE)
_VALUE = re.compile(rb"-?[\w.:]+|\"[^\"\n]*\"|'[^'\n]*'")


@dataclass
class Text:
    """The source with a set of changes, each to be chosen by its number."""

    text: bytes
    starts: list[int]  # the lines at which changes begin and end, in ascending order
    numbers: list[set[int]]  # the changes there

    def numbers_at(self, line: int) -> set[int]:
        at = bisect_right(self.starts, line) - 1
        return self.numbers[at] if at >= 0 else set()


@dataclass(frozen=True)
class Place:
    """What is compiled once more for a change: a function's body, or a value."""

    begin: int
    end: int
    body: Body | None


def places_of(source: bytes, mutants: list[Mutant], bodies: list[Body]) -> dict[int, Place]:
    """Where the changes are compiled in, by the number of the change; not of all."""
    found = {}
    for number, mutant in enumerate(mutants, 1):
        for body in bodies:
            if body.begin < mutant.begin and mutant.end < body.end:
                found[number] = Place(body.begin, body.end, body)
                break
        else:
            before = source[mutant.begin : mutant.end]
            if _VALUE.fullmatch(before) and _VALUE.fullmatch(mutant.text.encode()):
                found[number] = Place(mutant.begin, mutant.end, None)
    return found


def combined(source: bytes, mutants: list[Mutant], within: dict[int, Place]) -> Text:
    """The text with the changes whose numbers are given."""
    by_place: dict[Place, list[int]] = {}
    for number, place in within.items():
        by_place.setdefault(place, []).append(number)
    parts, starts, numbers, line, done = [_CHOOSER.encode()], [], [], 1, 0

    def add(piece: bytes, *belonging: int) -> None:
        nonlocal line
        starts.append(line)
        numbers.append(set(belonging))
        parts.append(piece)
        line += piece.count(b"\n")

    for place, own in sorted(by_place.items(), key=lambda each: each[0].begin):
        original = source[place.begin : place.end]
        if place.body is None:
            add(source[done : place.begin] + b"\n")
            choices = (f"quillonVariant() == {each} ? {mutants[each - 1].text} : " for each in own)
            add(b"(" + "".join(choices).encode() + original + b")\n", *own)
        else:
            add(source[done : place.begin] + b"{ switch (quillonVariant()) {\n")
            leave = "return;" if place.body.gives_nothing else "__builtin_trap();"
            for number in own:
                mutant = mutants[number - 1]
                changed = (
                    source[place.begin : mutant.begin]
                    + mutant.text.encode()
                    + source[mutant.end : place.end]
                )
                add(f"case {number}:\n".encode() + changed + f"\n{leave}\n".encode(), number)
            add(b"}\n" + original + b"}")
        done = place.end
    add(source[done:])
    return Text(b"".join(parts), starts, numbers)


def numbers_in_errors(output: str, path: str, text: Text) -> set[int]:
    """The changes to which errors belong. An error elsewhere goes with one of them as a rule."""
    found: set[int] = set()
    is_open = False
    for match in _PLACE.finditer(output):
        is_open = is_open or "error" in match[3]
        if is_open and Path(match[1]).name == Path(path).name:
            numbers = text.numbers_at(int(match[2]))
            found |= numbers
            is_open = not numbers
    return found
