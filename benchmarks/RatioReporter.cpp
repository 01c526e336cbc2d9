#include "RatioReporter.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace benchmarks {
namespace {

double medianOf(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

std::string timeText(double seconds) {
  struct Unit {
    double seconds;
    const char* name;
  };
  static constexpr std::array<Unit, 3> UNITS = {{{1, "s"}, {1e-3, "ms"}, {1e-6, "us"}}};
  Unit unit = {1e-9, "ns"};
  for (auto larger = UNITS.rbegin(); larger != UNITS.rend(); ++larger) {
    if (seconds >= larger->seconds) {
      unit = *larger;
    }
  }
  std::array<char, 32> text = {};
  std::snprintf(text.data(), text.size(), "%.3g %s", seconds / unit.seconds, unit.name);
  return text.data();
}

}  // namespace

bool RatioReporter::ReportContext(const Context& /*context*/) {
  std::printf("%-64s %9s %9s   %-21s %s\n", "operation/shape/size", "library", "floor",
              "ratio [min .. max]", "goal");
  return true;
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    const std::string name = run.run_name.function_name;
    const std::size_t slash = name.rfind('/');
    if (name.substr(0, slash) != m_name) {
      printPair();
      m_name = name.substr(0, slash);
      m_goal = run.counters.at("goal");
    }
    std::vector<double>& times = name.substr(slash) == "/library" ? m_library : m_floor;
    times.push_back(run.cpu_accumulated_time / static_cast<double>(run.iterations));
  }
}

void RatioReporter::Finalize() { printPair(); }

void RatioReporter::printPair() {
  std::vector<double> ratios;
  for (std::size_t k = 0; k < std::min(m_library.size(), m_floor.size()); ++k) {
    ratios.push_back(m_library[k] / m_floor[k]);
  }
  if (!ratios.empty()) {
    const double ratio = medianOf(ratios);
    const auto [least, greatest] = std::minmax_element(ratios.begin(), ratios.end());
    std::printf("%-64s %9s %9s   %5.2f [%5.2f .. %5.2f] %5.2f%s\n", m_name.c_str(),
                timeText(medianOf(m_library)).c_str(), timeText(medianOf(m_floor)).c_str(), ratio,
                *least, *greatest, m_goal, ratio > m_goal ? "  missed" : "");
    std::fflush(stdout);
  }
  m_library.clear();
  m_floor.clear();
}

}  // namespace benchmarks
