#include <object_model/IO.h>
#include <quillon/memory/Dictionary.h>

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>

#include "Case.h"
#include "Opaque.h"
#include "Position.h"
#include "UncheckedArray.h"
#include "UncheckedFrame.h"

namespace benchmarks {
namespace {

using quillon::memory::Axis;
using quillon::memory::Dictionary;
using Names = std::vector<std::string>;

const std::string ENTRY = "A";
const std::string UNIT = "m";

template <class T>
constexpr tabra::DataTypeId COLUMN_TYPE = tabra::DataTypeId::Float64;
template <>
constexpr tabra::DataTypeId COLUMN_TYPE<unsigned long> = tabra::DataTypeId::UInt64;
template <>
constexpr tabra::DataTypeId COLUMN_TYPE<long> = tabra::DataTypeId::Int64;

template <class T>
std::vector<T> fewValues() {
  std::vector<T> values(4096);
  for (std::size_t k = 0; k < values.size(); ++k) {
    values[k] = static_cast<T>(k) + static_cast<T>(0.5);
  }
  return values;
}

/// The export of one array, all axes but at most one of which are index axes.
template <class T>
class Export final : public Operation {
 public:
  Export(const std::vector<Axis>& axes, Names indexNames)
      : m_indexNames(std::move(indexNames)), m_dimensions(axes.size()) {
    UncheckedArray<T> array(ENTRY, axes, fewValues<T>());
    array.setUnit(UNIT);
    m_dictionary.add(std::move(array));
    for (const std::string& name : m_indexNames) {
      const auto isNamed = [&](const Axis& axis) { return axis.getAxisName() == name; };
      const auto found = std::find_if(axes.begin(), axes.end(), isNamed);
      m_index.push_back({static_cast<std::size_t>(found - axes.begin()), found->size()});
      m_rows *= found->size();
    }
    for (std::size_t k = 0; k < axes.size(); ++k) {
      if (std::count(m_indexNames.begin(), m_indexNames.end(), axes[k].getAxisName()) == 0) {
        m_spread = {k, axes[k].size()};
        m_spreadName = axes[k].getAxisName();
      }
    }
  }

  void runLibrary() override {
    object_model::exportToDataFrame(m_dictionary, &m_byLibrary, m_indexNames);
  }

  void runFloor() override {
    const object_model::Array& array = *m_dictionary.data(0)->asArray();
    auto& frame = opaque<tabra::DataFrameView>(m_byHand);
    makeColumns(frame);
    writeIndexColumns(frame);
    Position position(m_dimensions);
    for (unsigned long k = 0; k < m_spread.extent; ++k) {
      const unsigned long column = m_index.size() + k;
      frame.setUnit(column, array.getPhysicalUnit());
      if (!m_spreadName.empty()) {
        position.set(m_spread.dimension, k);
      }
      unsigned long row = 0;
      walk(m_index, position, [&] {
        const T value = read<T>(array, position);
        frame.write(column, row++, 1, &value);
      });
    }
  }

  void check() override {
    runLibrary();
    runFloor();
    require(
        m_byHand.shape() == std::array<unsigned long, 2>{m_index.size() + m_spread.extent, m_rows},
        "the table made by hand has another shape");
    require(sameTables(m_byLibrary, m_byHand), "exportToDataFrame() makes another table");
  }

 private:
  void makeColumns(tabra::DataFrameView& frame) const {
    const std::array<unsigned long, 2> before = frame.shape();
    for (unsigned long k = 0; k < before[0]; ++k) {
      frame.removeColumn(k);
    }
    frame.removeRows(0, before[1]);
    frame.addRows(0, m_rows);
    for (const std::string& name : m_indexNames) {
      frame.addColumn("Index [" + name + "]", tabra::DataType(tabra::DataTypeId::UInt64));
    }
    const tabra::DataType type(COLUMN_TYPE<T>);
    if (m_spreadName.empty()) {
      frame.addColumn(ENTRY, type);
      return;
    }
    std::string name = ENTRY + "[" + m_spreadName + "=";
    const std::size_t common = name.size();
    for (unsigned long k = 0; k < m_spread.extent; ++k) {
      name.resize(common);
      name += std::to_string(k);
      name += ']';
      frame.addColumn(name, type);
    }
  }

  void writeIndexColumns(tabra::DataFrameView& frame) const {
    Position position(m_dimensions);
    for (std::size_t k = 0; k < m_index.size(); ++k) {
      const unsigned long& coordinate = std::as_const(position)[m_index[k].dimension];
      unsigned long row = 0;
      walk(m_index, position, [&] { frame.write(k, row++, 1, &coordinate); });
    }
  }

  Names m_indexNames;
  unsigned long m_dimensions;
  Dictionary m_dictionary{"measurements"};
  std::vector<Walked> m_index;
  Walked m_spread = {0, 1};
  std::string m_spreadName;  // empty: there is no spread axis, and one column
  unsigned long m_rows = 1;
  UncheckedFrame m_byLibrary;
  UncheckedFrame m_byHand;
};

unsigned long root(unsigned long size, double degree) {
  return static_cast<unsigned long>(std::lround(std::pow(static_cast<double>(size), 1 / degree)));
}

std::vector<Axis> line(unsigned long size) { return {{"x", size}}; }
std::vector<Axis> square(unsigned long size) {
  const unsigned long side = root(size, 2);
  return {{"x", side}, {"y", side}};
}
std::vector<Axis> cube(unsigned long size) {
  const unsigned long side = root(size, 3);
  return {{"x", side}, {"y", side}, {"z", side}};
}
/// `channels` columns of the rest of the size.
std::vector<Axis> spreadFirst(unsigned long size, unsigned long channels) {
  return {{"channel", channels}, {"x", size / channels}};
}
std::vector<Axis> spreadLast(unsigned long size, unsigned long channels) {
  return {{"x", size / channels}, {"channel", channels}};
}
std::vector<Axis> spreadMiddle(unsigned long size, unsigned long channels) {
  const unsigned long side = root(size / channels, 2);
  return {{"x", side}, {"channel", channels}, {"y", side}};
}

}  // namespace

void addExportCases(Cases& cases) {
  constexpr unsigned long ROWS = 1'000'000;
  constexpr unsigned long CHANNELS = 4;
  const auto add = [&](const std::string& what, const std::string& shape, unsigned long size,
                       double goal, auto type, auto axesOf, const Names& indexNames) {
    using T = decltype(type);
    cases.push_back({"exportToDataFrame/" + what, shape, size, goal, [=](unsigned long someSize) {
                       return std::make_unique<Export<T>>(axesOf(someSize), indexNames);
                     }});
  };
  const auto firstOf4 = [](unsigned long size) { return spreadFirst(size, CHANNELS); };
  const auto lastOf4 = [](unsigned long size) { return spreadLast(size, CHANNELS); };
  const auto middleOf4 = [](unsigned long size) { return spreadMiddle(size, CHANNELS); };
  const auto tenRows = [](unsigned long size) { return spreadLast(size, size / 10); };

  add("Double/x", "tiny", 4, 1.5, 0.0, line, {"x"});
  add("UInt/x", "tall", ROWS, 1.5, 0UL, line, {"x"});
  add("Int/x", "tall", ROWS, 1.5, 0L, line, {"x"});
  add("Double/x", "tall", ROWS, 1.5, 0.0, line, {"x"});
  cases.back().growth = true;
  add("Double/xy", "tall", ROWS, 1.5, 0.0, square, {"x", "y"});
  add("Double/yx", "tall", ROWS, 1.5, 0.0, square, {"y", "x"});
  add("Double/xyz", "deep", ROWS, 1.5, 0.0, cube, {"x", "y", "z"});
  add("Double/zyx", "deep", ROWS, 1.5, 0.0, cube, {"z", "y", "x"});
  add("Double/x,4-columns", "tall", CHANNELS * ROWS, 1.5, 0.0, lastOf4, {"x"});
  add("Double/x,4-columns-interleaved", "tall", CHANNELS * ROWS, 1.5, 0.0, firstOf4, {"x"});
  add("Double/yx,4-columns", "deep", CHANNELS * ROWS, 1.5, 0.0, middleOf4, {"y", "x"});
  add("Double/x,10-rows", "wide", ROWS, 2, 0.0, tenRows, {"x"});
  cases.back().growth = true;
}

}  // namespace benchmarks
