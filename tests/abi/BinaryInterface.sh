#!/usr/bin/env bash
# What programs that were built against a shared library rely on: the layout of its public types and
# the signatures of its functions. Needs abidw and abidiff (abigail-tools), readelf and nm (binutils).
#
#   BinaryInterface.sh compare LIBRARY BASELINE HEADERS...  fails, with a report, unless LIBRARY has the
#                                                           interface that BASELINE describes
#   BinaryInterface.sh update LIBRARY BASELINE HEADERS...   writes BASELINE; review what compare says
#
# Types outside the directories HEADERS are private. LIBRARY needs debug information.
set -euo pipefail
export LC_ALL=C

here="$(dirname -- "${BASH_SOURCE[0]}")"

# Without debug information there is nothing to describe, and abidiff would find no difference.
require_debug_information() {
  if ! readelf --sections --wide "$1" | grep -Fq ' .debug_info '; then
    echo "$1 has no debug information: build it with -g" >&2
    return 1
  fi
}

# The options keep out what depends on the place of the sources and of the build.
describe() {
  local library=$1 headers=()
  shift
  local directory
  for directory in "$@"; do headers+=(--headers-dir "$directory"); done
  abidw --no-corpus-path --no-comp-dir-path --no-show-locs --short-locs --no-elf-needed \
    --no-parameter-names --no-write-default-sizes --exported-interfaces-only \
    --drop-private-types "${headers[@]}" --suppressions "$here/StandardInternals.suppr" "$library"
}

# A class is described where its table is: in the library that defines its destructor. One that is
# only declared could change unseen.
require_whole_classes() {
  local library=$1 description=$2 class status=0
  while read -r class; do
    if ! grep -Fq "class-decl name='${class##*::}' size-in-bits=" "$description"; then
      echo "$library: the layout of $class is not described" >&2
      status=1
    fi
  done < <(nm -DC --defined-only "$library" | sed -n 's/.* typeinfo for //p')
  return "$status"
}

[[ $# -ge 4 && -r $2 ]] || { sed -n '5,9s/^# \{0,1\}//p' "$0" >&2; exit 2; }
command=$1 library=$2 baseline=$3
shift 3
description="$(mktemp)"
trap 'rm -f -- "$description"' EXIT
require_debug_information "$library"
describe "$library" "$@" > "$description"
require_whole_classes "$library" "$description"
case $command in
  compare)
    # Any status but 0 counts: changes that are called compatible, and abidiff's own errors too.
    # The changes are shown from the functions that they reach: with --leaf-changes-only, abidiff 2.2
    # does not see two slots swapped.
    abidiff "$baseline" "$description" || {
      echo "$library does not have the reviewed interface of $baseline" >&2
      echo "If that is meant: ./dev interface --update" >&2
      exit 1
    }
    ;;
  update) cat -- "$description" > "$baseline" ;;
  *) echo "unknown command: $command" >&2; exit 2 ;;
esac
