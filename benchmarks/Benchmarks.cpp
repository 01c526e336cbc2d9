/// Times every case in the library's way and by hand, and prints the ratios. Takes the options of
/// Google Benchmark.
#include <benchmark/benchmark.h>

#include <exception>
#include <iostream>

#include "Case.h"
#include "RatioReporter.h"

namespace benchmarks {
namespace {

using Way = void (Operation::*)();

/// The operation of the pair that is being run, made and checked when its first benchmark runs.
class Current {
 public:
  Operation& of(const Case& some, unsigned long size) {
    if (m_case != &some || m_size != size) {
      m_operation.reset();  // before the next one takes its memory
      m_operation = some.make(size);
      m_case = &some;
      m_size = size;
      m_operation->check();
    }
    return *m_operation;
  }

 private:
  const Case* m_case = nullptr;
  unsigned long m_size = 0;
  std::unique_ptr<Operation> m_operation;
};

void time(benchmark::State& state, Operation& operation, Way way) {
  for (auto _ : state) {  // NOLINT(clang-analyzer-deadcode.DeadStores): only counts the rounds
    (operation.*way)();
    benchmark::ClobberMemory();
  }
}

/// The two ways take turns, so that what else the machine does meanwhile slows down both alike.
void addPair(Current& current, const Case& some, unsigned long size) {
  constexpr int RUNS = 5;
  const std::string pair = some.operation + "/" + some.shape + "/" + std::to_string(size);
  const auto add = [&](const std::string& side, Way way) {
    const auto run = [&current, &some, size, way](benchmark::State& state) {
      time(state, current.of(some, size), way);
      state.counters["goal"] = some.goal;
      state.counters["size"] = static_cast<double>(size);
    };
    benchmark::RegisterBenchmark((pair + "/" + side).c_str(), run);
  };
  for (int k = 0; k < RUNS; ++k) {
    add("library", &Operation::runLibrary);
    add("floor", &Operation::runFloor);
  }
}

void addSmallerSizes(Current& current, const Case& some) {
  constexpr unsigned long SMALLEST = 100;
  for (unsigned long size = SMALLEST; size < some.size; size *= 10) {
    addPair(current, some, size);
  }
}

int runAll() {
  Current current;
  const Cases cases = allCases();
  for (const Case& some : cases) {
    addPair(current, some, some.size);
  }
  for (const Case& some : cases) {
    if (some.growth) {
      addSmallerSizes(current, some);
    }
  }
  RatioReporter reporter;
  return benchmark::RunSpecifiedBenchmarks(&reporter) > 0 ? 0 : 1;
}

}  // namespace
}  // namespace benchmarks

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 1;
  }
  try {
    return benchmarks::runAll();
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
