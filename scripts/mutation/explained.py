"""The reviewed survivors: a text file of blocks that blank lines separate.

    ObjectModel/src/IO/ClassicStream.h
    - the line as it is
    + the line as the mutant has it
      Why no caller can tell.

One file and one reason may stand for several pairs of lines. Blanks at the ends of a line and the
number of blanks inside do not matter; a change of several lines has as many "-" and "+" lines.
"""

from dataclasses import dataclass
from pathlib import Path

Key = tuple[str, str, str]  # file, text before, text after


@dataclass(frozen=True)
class Explanation:
    key: Key
    line: int


def key_of(file: str, before: str, after: str) -> Key:
    return file, " ".join(before.split()), " ".join(after.split())


def difference(before: str, after: str) -> str:
    lines = [f"-{line}" for line in before.splitlines()]
    lines += [f"+{line}" for line in after.splitlines()]
    return "\n".join(lines)


def read(path: Path) -> list[Explanation]:
    if not path.exists():
        return []
    explanations: list[Explanation] = []
    file, pair, line_of_pair, reason = "", {"-": "", "+": ""}, 0, True

    def finish_pair() -> None:
        if pair["-"]:
            explanations.append(
                Explanation(key_of(file, pair["-"], pair["+"]), line_of_pair)
            )
        pair.update({"-": "", "+": ""})

    def finish_block(number: int) -> None:
        finish_pair()
        if file and not reason:
            raise ValueError(f"{path}:{number}: no reason is given")

    number = 0
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if line.startswith("#"):
            continue
        if not line.strip():
            finish_block(number)
            file, reason = "", True
        elif not file:
            file, reason = line.strip(), False
        elif line[0] in "-+":
            if line[0] == "-" and pair["+"]:
                finish_pair()
            if not pair["-"]:
                line_of_pair = number
            # A change may leave an empty line, which is a "+" alone.
            pair[line[0]] += line[1:] + " "
        else:
            reason = True
    finish_block(number)
    return explanations
