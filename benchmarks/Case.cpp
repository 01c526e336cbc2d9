#include "Case.h"

#include <stdexcept>

namespace benchmarks {

Cases allCases() {
  Cases cases;
  addComparisonCases(cases);
  addBulkComparisonCases(cases);
  addDictionaryComparisonCases(cases);
  addReportComparisonCases(cases);
  addExportCases(cases);
  addRenderingCases(cases);
  addProxyCases(cases);
  addTableCases(cases);
  return cases;
}

void require(bool right, const std::string& what) {
  if (!right) {
    throw std::runtime_error("Wrong result, not timed: " + what);
  }
}

}  // namespace benchmarks
