#include <quillon/compare/Compare.h>
#include <quillon/compare/Text.h>
#include <quillon/memory/TypedArray.h>

#include <iostream>

int main() {
  using namespace quillon;
  const memory::DoubleArray expected("area", {memory::Axis("label", 3)}, {1.5, 2.5, 3.5});
  const memory::DoubleArray actual("area", {memory::Axis("label", 3)}, {1.5, 2.75, 3.5});
  const compare::Report report = compare::compare(actual, expected);
  std::cout << (report.same ? "same\n" : "different\n") << compare::text(report) << '\n';
}
