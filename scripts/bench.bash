# shellcheck shell=bash
# What the library's operations cost beside the least work that their interfaces allow: ./dev bench.

BENCH_PACKAGES=(libbenchmark-dev)

## bench: time the library's operations beside their floors (options go to Google Benchmark)
verb_bench() {
  need "${BUILD_PACKAGES[@]}" "${BENCH_PACKAGES[@]}"
  build bench --target quillon_benchmarks
  build/bench/benchmarks/quillon_benchmarks --benchmark_min_time=0.05 "$@"
}
