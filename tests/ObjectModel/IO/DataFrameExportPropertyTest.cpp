#include <gtest/gtest.h>
#include <object_model/IO.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/TypedArray.h>
#include <rapidcheck.h>

#include "ExportOutcome.h"
#include "PlainExport.h"
#include "support/Properties.h"

namespace object_model {
namespace {

using quillon::memory::Axis;
using Entries = quillon::memory::Dictionary;

template <class T>
std::vector<T> counting(unsigned long count) {
  std::vector<T> values;
  for (unsigned long i = 0; i < count; ++i) {
    values.push_back(static_cast<T>(static_cast<long>(i) - 2));
  }
  return values;
}

/// A dictionary of arrays over few axis names, so that names meet, and mostly of agreeing sizes.
void addEntries(Entries& entries) {
  const auto sizes = *rc::gen::container<std::vector<unsigned long>>(
      4, rc::gen::element<unsigned long>(1, 2, 3, 2, 0));
  const int count = ::test::pick(5);
  for (int i = 0; i < count; ++i) {
    const std::string name = "e" + std::to_string(i);
    std::vector<Axis> axes;
    unsigned long elements = 1;
    const int dimensions = ::test::pick(5);
    for (int k = 0; k < dimensions; ++k) {
      const auto axis = ::test::pick<std::size_t>(4);
      const bool disagrees = ::test::pick(20) == 0;
      axes.emplace_back(std::string(1, "abcd"[axis]), sizes[axis] + (disagrees ? 1 : 0));
      elements *= axes.back().size();
    }
    switch (::test::pick(24)) {
      case 0:
        entries.add(Entries(name));
        break;
      case 1:
        entries.add(quillon::memory::StringArray(name, axes, std::vector<std::string>(elements)));
        break;
      case 2:
      case 3:
      case 4:
      case 5:
        entries.add(quillon::memory::UIntArray(name, axes, counting<unsigned long>(elements)));
        break;
      case 6:
      case 7:
      case 8:
      case 9:
        entries.add(quillon::memory::IntArray(name, axes, counting<long>(elements)));
        break;
      default:
        entries.add(quillon::memory::DoubleArray(name, axes, counting<double>(elements)))
            .setUnit("u" + std::to_string(i));
    }
  }
}

TEST(DataFrameExportProperty, AgreesWithThePlainVersionOnEveryCall) {
  EXPECT_TRUE(rc::check("export = plain export", [] {
    Entries entries("e");
    addEntries(entries);
    const auto indexNames =
        *rc::gen::resize(4, rc::gen::container<std::vector<std::string>>(
                                rc::gen::element<std::string>("a", "b", "c", "d")));
    RC_ASSERT(
        test::exportOutcome([&](auto& frame) { exportToDataFrame(entries, &frame, indexNames); }) ==
        test::exportOutcome([&](auto& frame) { test::plainExport(entries, frame, indexNames); }));
  }));
}

}  // namespace
}  // namespace object_model
