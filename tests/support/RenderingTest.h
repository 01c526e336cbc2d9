#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <limits>
#include <locale>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/RecordingDataFrame.h"

namespace test {

/// What the tests of the renderings share: a table that is filled column by column.
class RenderingTest : public ::testing::Test {
 protected:
  template <class T>
  void addColumn(const std::string& name, tabra::DataTypeId type, const std::vector<T>& values) {
    static_assert(sizeof(T) == 8);
    if (table().shape()[0] == 0) {
      table().addRows(0, values.size());
    }
    table().addColumn(name, tabra::DataType(type));
    table().write(table().shape()[0] - 1, 0, values.size(), values.data());
  }
  void addUInts(const std::string& name, const std::vector<unsigned long>& values) {
    addColumn(name, tabra::DataTypeId::UInt64, values);
  }
  void addInts(const std::string& name, const std::vector<long>& values) {
    addColumn(name, tabra::DataTypeId::Int64, values);
  }
  void addDoubles(const std::string& name, const std::vector<double>& values) {
    addColumn(name, tabra::DataTypeId::Float64, values);
  }
  void addExample() {
    addUInts("id", {1, 2, 3});
    addDoubles("area", {0.5, 1234567.0, 0.1});
    addInts("delta", {-3, 10, 0});
  }

  tabra::MemoryDataFrame& table() { return m_frame->frame(); }

  std::shared_ptr<RecordingDataFrame> m_frame = std::make_shared<RecordingDataFrame>();
};

/// Sets a global locale that groups digits and has a decimal comma, for as long as it lives.
class GermanLocale {
 public:
  GermanLocale() : m_before(std::locale::global(std::locale(std::locale(), new Numbers))) {}
  ~GermanLocale() { std::locale::global(m_before); }
  GermanLocale(const GermanLocale&) = delete;
  GermanLocale& operator=(const GermanLocale&) = delete;

 private:
  class Numbers : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };

  std::locale m_before;
};

/// A table whose rows are claimed, not held: row r of its one column holds r.
class ClaimingFrame : public RecordingDataFrame {
 public:
  explicit ClaimingFrame(unsigned long rows) : m_shape{1, rows} {}
  const std::array<unsigned long, 2>& shape() const override { return m_shape; }
  const std::string& columnName(unsigned long /*column*/) const override { return m_name; }
  tabra::DataType columnDataType(unsigned long /*column*/) const override {
    return tabra::DataType(tabra::DataTypeId::UInt64);
  }
  void read(unsigned long /*column*/, unsigned long firstRow, unsigned long count,
            void* destination) const override {
    for (unsigned long i = 0; i < count; ++i) {
      static_cast<unsigned long*>(destination)[i] = firstRow + i;
    }
  }

 private:
  std::array<unsigned long, 2> m_shape;
  std::string m_name = "row";
};

/// A table whose one column has values of a type that cannot be shown, so that nothing is read.
class UnshownFrame : public ClaimingFrame {
 public:
  using ClaimingFrame::ClaimingFrame;
  tabra::DataType columnDataType(unsigned long /*column*/) const override {
    return tabra::DataType(static_cast<tabra::DataTypeId>(0x99));
  }
  void read(unsigned long /*column*/, unsigned long /*firstRow*/, unsigned long /*count*/,
            void* /*destination*/) const override {}
};

/// A table of unsigned zeros that claims any shape, each time it is asked the next one, and writes
/// nothing when it is read.
class TurningFrame : public RecordingDataFrame {
 public:
  using Shape = std::array<unsigned long, 2>;
  explicit TurningFrame(std::vector<Shape> shapes) : m_shapes(std::move(shapes)) {}
  const Shape& shape() const override {
    m_shape = m_shapes[std::min(m_asked++, m_shapes.size() - 1)];
    return m_shape;
  }
  const std::string& columnName(unsigned long column) const override {
    return m_name = std::string(1, static_cast<char>('a' + column));
  }
  tabra::DataType columnDataType(unsigned long /*column*/) const override {
    return tabra::DataType(tabra::DataTypeId::UInt64);
  }
  void read(unsigned long /*column*/, unsigned long /*firstRow*/, unsigned long /*count*/,
            void* /*destination*/) const override {}

 private:
  std::vector<Shape> m_shapes;
  mutable Shape m_shape = {};
  mutable std::size_t m_asked = 0;
  mutable std::string m_name;
};

/// A table of one value that changes the global locale when it is read, until the table is gone.
class GermanFrame : public ClaimingFrame {
 public:
  GermanFrame() : ClaimingFrame(1) {}
  void read(unsigned long /*column*/, unsigned long /*firstRow*/, unsigned long /*count*/,
            void* destination) const override {
    m_locale.emplace();
    *static_cast<unsigned long*>(destination) = 1234567;
  }

 private:
  mutable std::optional<GermanLocale> m_locale;
};

/// A table that cannot be read.
class UnreadableFrame : public ClaimingFrame {
 public:
  UnreadableFrame() : ClaimingFrame(3) {}
  void read(unsigned long /*column*/, unsigned long /*firstRow*/, unsigned long /*count*/,
            void* /*destination*/) const override {
    throw std::domain_error("unreadable");
  }
};

}  // namespace test
