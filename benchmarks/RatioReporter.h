#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace benchmarks {

/// Prints a line for each pair of benchmarks NAME/library and NAME/floor, whose runs come in turns:
/// the median times, and the median, least and greatest ratio of two runs that followed each other.
class RatioReporter final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

 private:
  void printPair();

  std::string m_name;  // of the pair that is being run
  double m_goal = 0;
  std::vector<double> m_library;  // seconds a run
  std::vector<double> m_floor;
};

}  // namespace benchmarks
