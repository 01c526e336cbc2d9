# shellcheck shell=bash
# What every change must pass besides its tests: ./dev check.
# shellcheck disable=SC2154  # tracked, in dev, sets `files`; bench.bash sets BENCH_PACKAGES

CHECK_PACKAGES=(clang libclang-rt-dev clang-tidy clang-format shellcheck git)

check_format() {
  say "clang-format"
  tracked '*.h' '*.cpp'
  clang-format --dry-run --Werror "${files[@]}"
}

check_scripts() {
  say "shellcheck"
  local file line scripts=()
  tracked .
  for file in "${files[@]}"; do
    read -r line <"$file" || true
    if [[ "$line" =~ ^'#!'.*sh$ || "$file" == *.bash ]]; then scripts+=("$file"); fi
  done
  shellcheck --external-sources --source-path=SCRIPTDIR "${scripts[@]}"
}

check_headers() {
  say "each public header alone"
  cmake --build --preset "$1" --target all_verify_interface_header_sets >&2
}

# The thread sanitizer goes with no other, so the tests that need it have a build of their own.
check_threads() {
  build thread --target object_model_thread_tests tabra_thread_tests netcdf_thread_tests
  run_tests thread --label-regex '^threads$'
}

# tidy CHECKS PRESET FOLDER...: clang-tidy on the sources of these folders, as the preset compiles them,
# with these checks more or less than .clang-tidy has. run-clang-tidy takes regular expressions on
# absolute paths; where a preset compiles several sources as one, that one is below build/.
tidy() {
  say "clang-tidy of the preset '$2'"
  local root folders
  root="$(sed 's/[^a-zA-Z0-9_/-]/\\&/g' <<<"$PWD")"
  folders="$(printf '|%s' "${@:3}")"
  # The number of warnings in system headers that are not shown is no news.
  run-clang-tidy -quiet "-checks=$1" -p "build/$2" "^$root/((${folders:1})/|build/$2/(${folders:1})/CMakeFiles/)" 2>&1 |
    sed -u '/[0-9]* warnings\? generated\.$/d'
}

# The folders whose names are ours: tests and fuzz targets go by those that their frameworks give them.
LINTED=(ObjectModel tabra memory compare tables arrow netcdf tools examples)

# The sources that include others are CMake's.
LINTED_AS_ONE='-bugprone-suspicious-include'

## analyze (40 min): clang-tidy with the checks of clang's static analyzer, which ./dev check leaves out
verb_analyze() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${CHECK_PACKAGES[@]}"
  cmake --preset sanitize >&2
  tidy "$LINTED_AS_ONE" sanitize "${LINTED[@]}"
}

## packaging (15 min): test the project as users meet it: fetched, installed, packed (options go to ctest)
verb_packaging() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"
  build dev
  run_tests dev --label-regex '^packaging$' "$@"
}

## check (40 min): formatting, scripts, documentation, interface, packaging, clang-tidy, sanitizers, instruction counts
verb_check() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${CHECK_PACKAGES[@]}" "${DOCS_PACKAGES[@]}" \
    "${INTERFACE_PACKAGES[@]}" "${BENCH_PACKAGES[@]}"
  check_format
  check_scripts
  check_docs
  say "what bounds what misses its goal"
  python3 scripts/performance.py
  check_interface
  build dev
  run_tests dev --label-regex '^packaging$'
  # One build is both clang++'s opinion and the sanitizers' subject.
  build sanitize
  check_headers sanitize
  # The static analyzer takes most of the linter's time, so it has a verb of its own.
  tidy "-clang-analyzer-*,$LINTED_AS_ONE" sanitize "${LINTED[@]}"
  run_tests sanitize "$@"
  check_threads
  check_instructions
  tidy '-clang-analyzer-*' dev benchmarks
}
