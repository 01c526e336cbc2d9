"""The reviewed survivors: a text file of blocks that blank lines separate.

    ObjectModel/src/IO/ClassicStream.h
    - the line as it is
    + the line as the mutant has it
      Why no caller can tell.

One file and one reason may stand for several pairs of lines. Blanks at the ends of a line and the
number of blanks inside do not matter; a change of several lines has as many "-" and "+" lines. The
first line of that text in the file is meant; "-#2" in place of "-" means the second one, and so on.
"""

import re
from dataclasses import dataclass
from pathlib import Path

# The file, which of the lines of that text, the text before, the text after.
Key = tuple[str, int, str, str]


@dataclass(frozen=True)
class Explanation:
    key: Key
    line: int


def words(text: str) -> str:
    return " ".join(text.split())


def key_of(file: str, number: int, before: str, after: str) -> Key:
    return file, number, words(before), words(after)


def number_of(source: str, line: int) -> int:
    """Which of the lines of its text the line is, both counted from 1."""
    lines = [words(each) for each in source.splitlines()[:line]]
    return lines.count(lines[-1])


def difference(number: int, before: str, after: str) -> str:
    mark = "-" if number == 1 else f"-#{number} "
    first, *others = before.splitlines()
    lines = [mark + first, *(f"-{line}" for line in others)]
    lines += [f"+{line}" for line in after.splitlines()]
    return "\n".join(lines)


def read(path: Path) -> list[Explanation]:
    if not path.exists():
        return []
    explanations: list[Explanation] = []
    file, pair, line_of_pair, reason = "", {"-": "", "+": ""}, 0, True
    which = 1

    def finish_pair() -> None:
        if pair["-"]:
            explanations.append(
                Explanation(key_of(file, which, pair["-"], pair["+"]), line_of_pair)
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
                marked = re.match(r"-#(\d+) ", line)
                which = int(marked[1]) if marked else 1
                line = "-" + line[marked.end() :] if marked else line
            # A change may leave an empty line, which is a "+" alone.
            pair[line[0]] += line[1:] + " "
        else:
            reason = True
    finish_block(number)
    return explanations
