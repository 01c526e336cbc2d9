# What the packaging tests share. A test script defines one function for each of its tests, then
# calls run_test "$@". The environment comes from CMakeLists.txt.
# shellcheck shell=bash
set -euo pipefail
shopt -s inherit_errexit

HERE="$QUILLON_SOURCE/tests/packaging"
: "${HERE:?}" "${QUILLON_BUILD:?}" "${QUILLON_PREFIX:?}" "${QUILLON_LIBDIR:?}" "${CMAKE:?}" "${CXX:?}"
: "${QUILLON_CLONE:?}"
unset CMAKE_PREFIX_PATH LD_LIBRARY_PATH PKG_CONFIG_PATH DESTDIR SOURCE_DATE_EPOCH

# The tests build the same sources in many folders: where ccache is installed, they compile each once
# for each set of options.
if command -v ccache >/dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER="$HERE/ccache-in-build" CCACHE_DIR="${CCACHE_DIR:-$QUILLON_BUILD/ccache}"
  # Python would set a locale of its own where there is none, and ccache tell its compilers apart.
  export LC_ALL=C.UTF-8
  # No source is preprocessed only to see whether it is known.
  export CCACHE_DEPEND=1 CCACHE_NOHASHDIR=1
fi

# In which language standards strangers' programs are compiled. A test may ask for more, and for
# each of the compilers: g++ and clang++ as far as they are installed.
STANDARDS=(17)
COMPILERS=()
for compiler in g++ clang++; do
  if command -v "$compiler" >/dev/null; then COMPILERS+=("$compiler"); fi
done
((${#COMPILERS[@]} > 0)) || COMPILERS=("$CXX")
# A compiler under two names is two of them for ccache.
for compiler in "${COMPILERS[@]}"; do
  if [[ "$(command -v "$compiler")" -ef "$(command -v "$CXX")" ]]; then export CXX="$compiler"; fi
done

fail() {
  printf 'FAILED: %s\n' "$*" >&2
  exit 1
}

expect_file() { [[ -e "$1" ]] || fail "missing: $1"; }
expect_no_file() { [[ ! -e "$1" ]] || fail "should not be there: $1"; }

# expect_no_file_with TEXT DIRECTORY: below it.
expect_no_file_with() {
  expect_equal "files that contain $1" "" "$(grep -rlF -- "$1" "$2" || true)"
}

# expect_equal WHAT EXPECTED ACTUAL
expect_equal() {
  [[ "$2" == "$3" ]] || fail "$1"$'\nexpected:\n'"$2"$'\nactual:\n'"$3"
}

# configure SOURCE BUILD [OPTION...]: an unoptimised build without debug information and without the
# Python package, several sources as one, unless an option says otherwise: else it takes its time.
configure() {
  "$CMAKE" -S "$1" -B "$2" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 \
    -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=16 -DQUILLON_PYTHON=OFF "${@:3}"
}

# build_and_install SOURCE BUILD PREFIX [OPTION...]
build_and_install() {
  configure "$1" "$2" "${@:4}"
  "$CMAKE" --build "$2" --parallel 2
  "$CMAKE" --install "$2" --prefix "$3"
}

# copy_project DIRECTORY: the files of the project as they are now, as a clone would have them.
copy_project() {
  mkdir -p "$1"
  # Git distrusts a clone that another user owns; listing files is safe.
  git -c safe.directory="$PWD" ls-files -z | tar --create --null --files-from=- |
    tar --extract --directory="$1"
}

# fresh_clone: leaves nothing in QUILLON_CLONE but the sources, and beside them what was released. All
# clone into one place, so that what one test has compiled is there for the next.
fresh_clone() {
  mkdir -p "$QUILLON_CLONE/build"
  find "$QUILLON_CLONE" -mindepth 1 -maxdepth 1 ! -name build ! -name root -exec rm -r {} +
  find "$QUILLON_CLONE/build" -mindepth 1 -maxdepth 1 ! -name package -exec rm -r {} +
  copy_project "$QUILLON_CLONE"
}

# build_as_released CLONE: what the packages are made of, in build/package below it.
build_as_released() (
  cd "$1"
  "$CMAKE" --preset package
  "$CMAKE" --build --preset package --parallel 2
)

# make_packages CLONE: the Debian packages, beside what they are made of.
make_packages() { "$1/dev" package; }

# debian_libraries: where the unpacked Debian packages have their libraries.
debian_libraries() {
  printf '%s\n' "$QUILLON_CLONE/root/usr/lib/$(dpkg-architecture --query DEB_HOST_MULTIARCH)"
}

# expect_output EXPECTED PROGRAM: the whole of what it prints.
expect_output() {
  local output
  output="$("$2")" || fail "$2 ended with status $?"
  expect_equal "$2" "$1" "$output"
}

# run_python_program PYTHON: the README's Python program prints what stands below it.
run_python_program() {
  awk '/^```python$/ { kind = "py"; next } /^```text$/ && seen { kind = "txt"; next }
    /^```/ { if (kind == "txt") { exit } seen = (kind == "py"); kind = ""; next }
    kind { print > (scratch "/program." kind) }' scratch="$SCRATCH" "$QUILLON_SOURCE/README.md"
  expect_file "$SCRATCH/program.py"
  (cd "$QUILLON_SOURCE" && "$1" "$SCRATCH/program.py") >"$SCRATCH/printed" || fail "the program fails"
  diff -u "$SCRATCH/program.txt" "$SCRATCH/printed"
}

# joined ITEM...: a CMake list.
joined() { (IFS=';' && printf '%s' "$*"); }

# expect_consumers_run DIRECTORY NAME...: the strangers' programs (see consumer/) built in DIRECTORY.
expect_consumers_run() {
  local name standard
  for name in "${@:2}"; do
    for standard in "${STANDARDS[@]}"; do
      expect_output "$(<"$HERE/consumer/$name.txt")" "$1/${name}_$standard"
    done
  done
}

# expect_consumers_build_with_cmake BUILD NAME... -- OPTION...: the strangers' CMake project.
expect_consumers_build_with_cmake() {
  local build="$1" names=()
  shift
  while [[ "$1" != -- ]]; do
    names+=("$1")
    shift
  done
  shift
  configure "$HERE/consumer" "$build" -DCONSUMERS="$(joined "${names[@]}")" \
    -DSTANDARDS="$(joined "${STANDARDS[@]}")" "$@"
  "$CMAKE" --build "$build" --parallel 2
  expect_consumers_run "$build" "${names[@]}"
}

# run_test TEST [ARGUMENT]: calls the function TEST from the project's root, with an empty directory of
# its own as SCRATCH.
run_test() {
  declare -F "$1" >/dev/null || fail "no test $1"
  SCRATCH="${QUILLON_SCRATCH:?}/$1${2:+/$2}"
  rm -rf "$SCRATCH"
  mkdir -p "$SCRATCH"
  cd "$QUILLON_SOURCE"
  "$@"
}
