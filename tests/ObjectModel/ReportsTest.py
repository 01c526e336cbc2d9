"""docs/reports.md against the library: each sentence that it lists is one that the library has.

Sentences on differences must begin a line that the document's programs print, which the tests of the
documents compare. Messages of errors must stand in the library's sources, but for what varies: a compiler
may keep a short text as numbers.
"""

import re
import sys
from pathlib import Path

document, folder = (Path(each) for each in sys.argv[1:])
text = document.read_text()

sources = "\n".join(path.read_text() for path in sorted(folder.rglob("*")) if path.suffix in (".h", ".cpp"))
code = re.sub(r"^\s*(//.*|#include.*)$", "", sources, flags=re.MULTILINE)
STRING = r'"((?:[^"\\\n]|\\.)*)"'
# Literals that stand side by side are one.
constants = "\n".join(re.findall(STRING, re.sub(r'"\s*"', "", code)))

printed = "\n" + "\n".join(re.findall(r"^```text\n(.*?)^```", text, re.MULTILINE | re.DOTALL))
rows = re.findall(r"^\| (.*) \|$", text, re.MULTILINE)
failures = []

sentences = [each for row in rows for each in re.findall(r"``(.+?)``", row)]
additions = [each for row in rows for each in re.findall(r"`( The [^`]+)`", row)]
for sentence in ["\n" + each for each in sentences] + additions:
    if sentence not in printed:
        failures.append(f"no program prints {sentence.strip()!r}")

messages = [row.split(" | ")[0] for row in rows if " | " in row]
messages = [each.strip("`") for each in messages if re.fullmatch(r"`[^`]+`", each)]
messages = [each for each in messages if " " in each and not each.startswith("...")]
for message in messages:
    # Where the source stands is put together with the number of the place.
    for part in re.split(r"NUMBER|NAME|TEXT| \(\d+\)$", message):
        part = part.removeprefix("Invalid call at ").strip()
        if len(part) > 1 and part not in constants:
            failures.append(f"the library has no {part!r}, which {message!r} is made of")

if len(sentences) < 12 or len(additions) < 2 or len(messages) < 17:
    failures.append(f"only {len(sentences)} sentences and {len(messages)} messages were found")
print("\n".join(failures) or f"{len(sentences)} sentences and {len(messages)} messages")
sys.exit(1 if failures else 0)
