/// What is measured, apart from how: a benchmark times it, a count of instructions runs it once.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace benchmarks {

/// One operation on data that were made for it, once as the library does it and once by hand, with
/// the least work that the interfaces allow: the floor.
class Operation {
 public:
  Operation() = default;
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;
  virtual ~Operation() = default;

  virtual void runLibrary() = 0;
  virtual void runFloor() = 0;

  /// Runs both and throws std::runtime_error unless both give the right result.
  virtual void check() = 0;
};

struct Case {
  std::string operation;  ///< such as "exportToDataFrame/Double/xy"; no blanks
  std::string shape;      ///< tiny, tall, wide, deep or square
  unsigned long size;     ///< how many elements, entries, cells or rows are worked on
  double goal;            ///< what library / floor is to be at most
  /// The operation on data of about `size`.
  std::function<std::unique_ptr<Operation>(unsigned long size)> make;
  bool growth = false;  ///< whether it is measured at smaller sizes as well
};

using Cases = std::vector<Case>;

void addComparisonCases(Cases& cases);
void addBulkComparisonCases(Cases& cases);
void addDictionaryComparisonCases(Cases& cases);
void addReportComparisonCases(Cases& cases);
void addExportCases(Cases& cases);
void addRenderingCases(Cases& cases);
void addProxyCases(Cases& cases);
void addTableCases(Cases& cases);

/// All of them, in the order in which they are shown.
Cases allCases();

/// @throws std::runtime_error that says so unless `right`.
void require(bool right, const std::string& what);

}  // namespace benchmarks
