# shellcheck shell=bash
# What programs that were built against the libraries rely on: ./dev interface.
# shellcheck disable=SC2154  # tracked, in dev, sets `files`

INTERFACE_PACKAGES=(abigail-tools binutils)
INTERFACE_CHECKS=(pinning_tests exported_names binary_interface)

# The functions of this file take the directory of the sources and the one of their build.

# each_library COMMAND SOURCE BUILD: runs COMMAND LIBRARY NAME SOURCE for each library, all of them.
each_library() {
  local status=0
  "$1" "$3/ObjectModel/libquillon_object_model.so" libquillon_object_model "$2" || status=1
  "$1" "$3/tabra/libtabra.so" libtabra "$2" || status=1
  return "$status"
}

pinning_tests() {
  cmake --build "$2" --target abi_tests && "$2/tests/abi/abi_tests" --gtest_brief=1
}

compare_names() { "$3/tests/abi/ExportedNames.sh" names "$1" "$3/tests/abi/$2.symbols"; }

exported_names() { each_library compare_names "$1" "$2"; }

run_abigail() {
  "$4/tests/abi/BinaryInterface.sh" "$1" "$2" "$4/tests/abi/$3.abi" \
    "$4/ObjectModel/interface" "$4/tabra/interface"
}

compare_interface() { run_abigail compare "$@"; }

update_interface() { run_abigail update "$@"; }

binary_interface() { each_library compare_interface "$1" "$2"; }

# The compiler of the preset dev makes what is released; a sanitized library has other names.
check_interface() {
  build dev --target quillon_object_model tabra abi_tests
  local check
  for check in "${INTERFACE_CHECKS[@]}"; do
    say "the interface of the libraries: $check"
    "$check" . build/dev
  done
}

# change FILE OLD NEW: replaces the one place of a file that reads OLD.
change() {
  local text
  text="$(<"$1")"
  [[ "$text" == *"$2"* ]] || fail "$1 does not read: $2"
  [[ "${text#*"$2"}" != *"$2"* ]] || fail "$1 reads more than once: $2"
  printf '%s\n' "${text/"$2"/"$3"}" >"$1"
}

# Each break is a function that changes the sources in the current directory.

swap_two_slots() {
  local header=ObjectModel/interface/object_model/Array.h
  change $header 'getPhysicalUnit() const = 0;' 'swapped() const = 0;'
  change $header 'getUnit() const = 0;' 'getPhysicalUnit() const = 0;'
  change $header 'swapped() const = 0;' 'getUnit() const = 0;'
}

add_a_slot_in_the_middle() {
  change tabra/interface/tabra/DataFrameView.h 'virtual void addRows(' \
    'virtual void added() {}
  virtual void addRows('
}

reorder_two_fields() {
  change ObjectModel/interface/object_model/Buffer.h \
    '  char* m_buffer;
  unsigned long m_size;' \
    '  unsigned long m_size;
  char* m_buffer;'
}

change_the_value_of_an_enumerator() {
  change ObjectModel/interface/object_model/PhysicalInformation.h 'LENGTH_POWER_3 = 4' 'LENGTH_POWER_3 = 5'
}

rename_an_exported_function() {
  local file
  for file in interface/object_model/PhysicalInformation.h src/PhysicalInformation.cpp; do
    change "ObjectModel/$file" ' determinePhysicalDimension(' ' findPhysicalDimension('
  done
}

drop_the_export_of_a_class() {
  change ObjectModel/interface/object_model/Request.h 'class OBJECT_MODEL_EXPORT Request' 'class Request'
}

BREAKS=(swap_two_slots add_a_slot_in_the_middle reorder_two_fields
  change_the_value_of_an_enumerator rename_an_exported_function drop_the_export_of_a_class)

copy_sources() {
  tracked .
  rm -rf -- "$1"
  mkdir -p -- "$1"
  cp --parents --preserve=timestamps -- "${files[@]}" "$1"
}

# Prints the checks that refuse the copy.
refusals() {
  local copy=$1 build=$2 log=$3 check refused=()
  cmake --build "$build" --target quillon_object_model tabra >"$log" 2>&1 ||
    fail "the libraries do not build, which proves nothing: see $log"
  for check in "${INTERFACE_CHECKS[@]}"; do
    "$check" "$copy" "$build" >>"$log" 2>&1 || refused+=("$check")
  done
  printf '%s\n' "${refused[*]}"
}

# Shows that the checks see what they are there for: each of some small breaks of a copy of the
# sources must be refused by one of them at least.
prove_interface() {
  say "the interface of the libraries: breaks that must be refused"
  local copy=build/interface/copy build=build/interface/build launcher=() log refused this
  copy_sources "$copy"
  if command -v ccache >/dev/null; then launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
  # No optimisation: it takes longer and changes no interface.
  cmake -S "$copy" -B "$build" -G Ninja -DQUILLON_NETCDF=OFF "${launcher[@]}" \
    -DCMAKE_BUILD_TYPE=Debug >/dev/null
  for this in unbroken "${BREAKS[@]}"; do
    log="build/interface/$this.log"
    if [[ "$this" == unbroken ]]; then
      refused="$(refusals "$copy" "$build" "$log")"
      [[ -z "$refused" ]] || fail "the unbroken copy is refused by $refused: see $log"
      continue
    fi
    (cd -- "$copy" && "$this")
    refused="$(refusals "$copy" "$build" "$log")"
    [[ -n "$refused" ]] || fail "$this got through: see $log"
    printf '%-34s refused by %s\n' "$this" "$refused"
    cp --parents -- "${files[@]}" "$copy"
  done
}

## interface (2 min): compare the binary interface with the reviewed one (--update it, --prove the checks)
verb_interface() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${INTERFACE_PACKAGES[@]}"
  case "${1-}" in
    '') check_interface ;;
    --update)
      build dev --target update_exported_names
      each_library update_interface . build/dev
      ;;
    --prove) prove_interface ;;
    *) fail "interface takes --update or --prove, not '$1'" ;;
  esac
}
