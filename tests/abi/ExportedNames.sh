#!/usr/bin/env bash
# What a shared library shows to those who link with it. Needs readelf and nm (binutils).
#
#   ExportedNames.sh names LIBRARY FILE            fails, with a diff, unless LIBRARY exports FILE's names
#   ExportedNames.sh update LIBRARY FILE           writes FILE; review the change before committing it
#   ExportedNames.sh dynamic LIBRARY ENTRY...      fails unless the dynamic section has every ENTRY:
#                                                  soname=NAME, runpath=PATH or needed=NAME
#
# "cmake --build BUILD --target update_exported_names" updates the files of all libraries.
set -euo pipefail
export LC_ALL=C

# Names only: addresses and the letters of weak and strong symbols differ between compilers, as do
# the twins of constructors and destructors, which are written alike.
exported_names() {
  nm -DC --defined-only "$1" | cut -d' ' -f3- |
    sed 's/std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >/std::string/g' |
    sort -u
}

dynamic_entries() {
  readelf -dW "$1" | sed -nE \
    -e 's/.*\(SONAME\).*\[(.*)\].*/soname=\1/p' \
    -e 's/.*\((RUNPATH|RPATH)\).*\[(.*)\].*/runpath=\2/p' \
    -e 's/.*\(NEEDED\).*\[(.*)\].*/needed=\1/p'
}

check_names() {
  if ! diff -u --label "reviewed: $2" --label "exported: $1" "$2" <(exported_names "$1"); then
    echo "$1 does not export the reviewed names: + is exported but not reviewed, - is missing." >&2
    echo "If that is meant: cmake --build BUILD --target update_exported_names" >&2
    return 1
  fi
}

check_dynamic() {
  local library=$1 entry status=0
  shift
  for entry in "$@"; do
    if ! dynamic_entries "$library" | grep -Fxq -- "$entry"; then
      echo "$library has no $entry; it has:" >&2
      dynamic_entries "$library" | sed 's/^/  /' >&2
      status=1
    fi
  done
  return "$status"
}

[[ $# -ge 3 && -r $2 ]] || { sed -n '4,9s/^# \{0,1\}//p' "$0" >&2; exit 2; }
command=$1
shift
case $command in
  names) check_names "$@" ;;
  update) exported_names "$1" > "$2" ;;
  dynamic) check_dynamic "$@" ;;
  *) echo "unknown command: $command" >&2; exit 2 ;;
esac
