#include <gtest/gtest.h>
#include <object_model/IO.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/tables/Table.h>
#include <rapidcheck/gtest.h>
#include <tabra/MemoryDataFrame.h>

#include <algorithm>

#include "TestArrays.h"
#include "support/Properties.h"

namespace quillon::tables {
namespace {

using memory::Axis;
using memory::Dictionary;
using Names = std::vector<std::string>;

const Names AXES = {"x", "y", "z"};

/// Some of the axes in any order, at least `fewest`.
std::vector<std::size_t> someAxes(std::size_t fewest) {
  std::vector<std::size_t> axes = {0, 1, 2};
  for (int k = ::test::pick(6); k > 0; --k) {
    std::next_permutation(axes.begin(), axes.end());
  }
  axes.resize(*rc::gen::inRange<std::size_t>(fewest, 4));
  return axes;
}

/// Adds an array of one of the export's types over these axes.
void addArray(Dictionary& data, const std::string& name, const std::vector<unsigned long>& sizes,
              const std::vector<std::size_t>& picked) {
  std::vector<Axis> axes;
  unsigned long count = 1;
  for (const std::size_t k : picked) {
    axes.emplace_back(AXES[k], sizes[k]);
    count *= sizes[k];
  }
  switch (::test::pick(3)) {
    case 0:
      data.add(memory::UIntArray(name, axes,
                                 *rc::gen::container<std::vector<unsigned long>>(
                                     count, rc::gen::arbitrary<unsigned long>())));
      break;
    case 1:
      data.add(memory::IntArray(
          name, axes, *rc::gen::container<std::vector<long>>(count, rc::gen::arbitrary<long>())));
      break;
    default:
      data.add(memory::DoubleArray(
          name, axes,
          *rc::gen::container<std::vector<double>>(count, rc::gen::arbitrary<double>())));
  }
}

/// Whether the export fills every cell of the array's columns: it never spreads a one-dimensional
/// array, and knows of three axes at most.
bool isFilled(const std::vector<std::size_t>& axes, const std::vector<std::size_t>& index) {
  const auto further =
      static_cast<std::size_t>(std::count_if(axes.begin(), axes.end(), [&index](std::size_t axis) {
        return std::find(index.begin(), index.end(), axis) == index.end();
      }));
  return index.size() + further <= 3 && (axes.size() > 1 || further == 0);
}

RC_GTEST_PROP(ExportPropertyTest, CellsAreThoseOfTheExportWhereverItFillsAll, ()) {
  std::vector<unsigned long> sizes;
  for (std::size_t k = 0; k < AXES.size(); ++k) {
    sizes.push_back(*rc::gen::inRange(1UL, 5UL));
  }
  const std::vector<std::size_t> picked = someAxes(0);
  Names index;
  for (const std::size_t axis : picked) {
    index.push_back(AXES[axis]);
  }
  Dictionary data("data");
  // The export has no rows where no array has an axis of the index.
  addArray(data, "v0", sizes, picked.empty() ? std::vector<std::size_t>{0, 1} : picked);
  for (int k = ::test::pick(4); k > 0; --k) {
    const std::vector<std::size_t> axes = someAxes(1);
    if (isFilled(axes, picked)) {
      addArray(data, "w" + std::to_string(k), sizes, axes);
    }
  }

  tabra::MemoryDataFrame frame;
  object_model::exportToDataFrame(data, &frame, index);
  Request request;
  request.index = index;
  request.variables = Names{"*"};
  request.positions = true;
  request.allColumns = true;
  const Table table(data, plan(data, request));

  RC_ASSERT(table.columns().size() == frame.shape()[0]);
  RC_ASSERT(table.rows() == frame.shape()[1]);
  for (unsigned long column = 0; column < frame.shape()[0]; ++column) {
    const std::string ours = table.columns()[column].name;
    const std::string theirs = frame.columnName(column);
    RC_ASSERT(theirs == (column < index.size() ? "Index [" + ours + "]" : theirs));
    RC_ASSERT(column < index.size() || ours.substr(0, 2) == theirs.substr(0, 2));
    RC_ASSERT(column < index.size() || ours.size() == theirs.size());
    std::vector<unsigned long> expected(frame.shape()[1]);
    frame.read(column, 0, expected.size(), expected.data());
    std::vector<unsigned long> cells(expected.size());
    visitColumnType(table.columns()[column].type, [&](auto tag) {
      using T = typename decltype(tag)::Type;
      if constexpr (sizeof(T) == sizeof(unsigned long)) {  // bit for bit
        table.read(column, 0, cells.size(), reinterpret_cast<T*>(cells.data()));
      }
    });
    RC_ASSERT(cells == expected);
  }
}

}  // namespace
}  // namespace quillon::tables
