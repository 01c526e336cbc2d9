# shellcheck shell=bash
# What the library's operations cost, beside the least work that their interfaces allow (./dev bench)
# and in instructions (./dev counts).

BENCH_PACKAGES=(libbenchmark-dev valgrind)
PLOT_PACKAGES=(gnuplot-nox jq)

# The instructions of each operation; a line '# ...' says what they depend on.
INSTRUCTION_COUNTS=benchmarks/instruction_counts.txt

# plot_growth RESULTS: draws how the cost of one element grows with their number.
plot_growth() {
  local growth=build/bench/growth.dat picture=docs/pictures/growth.svg
  say "drawing $picture"
  jq --raw-output --from-file benchmarks/growth.jq "$1" >"$growth"
  mkdir -p "$(dirname "$picture")"
  gnuplot -c benchmarks/growth.gnuplot "$growth" "$picture"
}

# publish NAME COMMAND...: prints what a benchmark prints, and where it succeeds puts it into
# docs/performance.md below that name.
publish() {
  local output="build/bench/$1.txt"
  mkdir -p build/bench
  "${@:2}" | tee "$output"
  python3 scripts/performance.py "$1" "$output"
}

# bench_python PROGRAM [OPTION...]: runs a program in benchmarks/ with the package as it is released.
bench_python() {
  build release --target quillon_python
  PYTHONPATH=build/release/python /usr/bin/python3 "benchmarks/$1" "${@:2}"
}

bench_floors() {
  need "${BUILD_PACKAGES[@]}" "${BENCH_PACKAGES[@]}" "${PLOT_PACKAGES[@]}"
  build bench --target quillon_benchmarks
  local results=build/bench/results.json
  local program=(build/bench/benchmarks/quillon_benchmarks --benchmark_min_time=0.02 "--benchmark_out=$results")
  # A selection has not all that the page and its picture show.
  if (($# > 0)); then
    "${program[@]}" "$@"
  else
    publish floors "${program[@]}"
    plot_growth "$results"
  fi
}

## bench (15 min): time operations beside their floors (options go to Google Benchmark), or --tools, --python, --dask, --engines beside others
verb_bench() {
  case "${1-}" in
    --tools)
      need "${BUILD_PACKAGES[@]}"
      build release --target quillon
      bench_tools build/release/tools/quillon
      ;;
    --python)
      need "${BUILD_PACKAGES[@]}" "${PYTHON_PACKAGES[@]}" python3-pandas python3-xarray
      publish python bench_python python_ratios.py
      ;;
    --dask)
      need "${BUILD_PACKAGES[@]}" "${PYTHON_PACKAGES[@]}" python3-xarray python3-dask python3-distributed
      bench_python dask_scale.py "${@:2}"
      publish dask bench_python dask_ratios.py
      ;;
    --engines)
      need "${BUILD_PACKAGES[@]}" "${BENCH_PACKAGES[@]}"
      build bench --target quillon_engine_ratio
      publish engines \
        tests/arrow/DuckDbTest build/bench/duckdb build/bench/benchmarks/quillon_engine_ratio
      ;;
    *) bench_floors "$@" ;;
  esac
}

# count_instructions PROGRAM OPERATION: prints the operation and how many instructions it takes.
count_instructions() {
  local log count
  log="$(valgrind --tool=callgrind --instr-atstart=no --callgrind-out-file=/dev/null "$@" 2>&1)" ||
    fail "$log"
  count="$(sed -n 's/.* Collected : //p' <<<"$log")"
  printf '%s %s\n' "$2" "$count"
}

# build_counter PRESET: builds the program whose instructions are counted, and sets `counter` to its path.
build_counter() {
  say "building what is counted in build/$1"
  cmake --preset "$1" -DQUILLON_BENCHMARKS=ON >&2
  cmake --build --preset "$1" --target quillon_count_instructions >&2
  counter="build/$1/benchmarks/quillon_count_instructions"
}

# count_all_instructions: prints what $INSTRUCTION_COUNTS is to hold.
count_all_instructions() {
  say "counting instructions"
  export -f count_instructions fail
  # The processor decides on how memory is copied and so on the counts; without these of its
  # features all processors are alike.
  local features=-AVX,-AVX2,-AVX512F,-AVX512VL,-AVX_Fast_Unaligned_Load,-SSSE3,-SSE4_1,-SSE4_2
  features+=,-BMI2,-FMA,-FMA4,-ERMS,-FSRM,-Fast_Unaligned_Copy
  export GLIBC_TUNABLES="glibc.cpu.hwcaps=$features"
  printf '# %s\n' "$("$counter" --built-by)"
  # shellcheck disable=SC2016  # the inner shell expands it
  "$counter" | xargs -P "$(nproc)" -I{} bash -c 'count_instructions "$@"' - "$counter" {} |
    LC_ALL=C sort
}

## counts (5 min): count the instructions of the library's operations anew, into benchmarks/
verb_counts() {
  need "${BUILD_PACKAGES[@]}" "${BENCH_PACKAGES[@]}"
  local counter counts
  build_counter bench
  counts="$(count_all_instructions)"
  printf '%s\n' "$counts" >"$INSTRUCTION_COUNTS"
}

# check_instructions: fails when an operation takes over 2 % more instructions than recorded.
check_instructions() {
  local counter recorded_by built_by counts
  # Optimised as what is released, and there already.
  build_counter dev
  recorded_by="$(sed -n '1s/^# //p' "$INSTRUCTION_COUNTS")"
  built_by="$("$counter" --built-by)"
  if [[ "$built_by" != "$recorded_by" ]]; then
    say "instruction counts not compared: this is $built_by; they were recorded with $recorded_by"
    return
  fi
  counts="$(count_all_instructions)"
  # The two lists, joined by the operation's name; 0 stands for a missing count.
  LC_ALL=C join -a1 -a2 -e0 -o0,1.2,2.2 <(tail -n +2 "$INSTRUCTION_COUNTS") <(tail -n +2 <<<"$counts") |
    awk '
      $2 == 0 { print $1 " is not recorded"; failed = 1 }
      $3 == 0 { print $1 " is recorded and no longer measured"; failed = 1 }
      $2 > 0 && $3 > 1.02 * $2 {
        printf "%s takes %d instructions, %.1f %% more than the %d recorded\n", $1, $3,
          100 * ($3 / $2 - 1), $2
        failed = 1
      }
      $3 > 0 && $3 < 0.98 * $2 {
        printf "%s takes %d instructions, %.1f %% fewer than the %d recorded: record them\n", $1, $3,
          100 * (1 - $3 / $2), $2
      }
      END { exit failed }' >&2 ||
    fail "instruction counts differ from $INSTRUCTION_COUNTS; if this is meant, run ./dev counts"
}
