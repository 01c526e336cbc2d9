#pragma once

#include <tabra/MemoryDataFrame.h>

#include <cstring>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace test {

/// A table in memory that writes down every call made on it, in the form
/// `addColumn(Index [time], 0x10140)`; a value read or written is shown after its column's type.
class RecordingDataFrame : public tabra::DataFrameView {
 public:
  const std::array<unsigned long, 2>& shape() const override {
    record("shape()");
    return m_frame.shape();
  }

  const std::string& columnName(unsigned long column) const override {
    record("columnName(", column, ")");
    return m_frame.columnName(column);
  }

  const std::string& columnUnit(unsigned long column) const override {
    record("columnUnit(", column, ")");
    return m_frame.columnUnit(column);
  }

  void setColumnUnit(unsigned long column, const std::string& unit) override {
    record("setColumnUnit(", column, ", ", unit, ")");
    m_frame.setColumnUnit(column, unit);
  }

  tabra::DataType columnDataType(unsigned long column) const override {
    record("columnDataType(", column, ")");
    return m_frame.columnDataType(column);
  }

  void read(unsigned long column, unsigned long firstRow, unsigned long count,
            void* destination) const override {
    record("read(", column, ", ", firstRow, ", ", count,
           destination == nullptr ? ", null)" : ", buffer)");
    m_frame.read(column, firstRow, count, destination);
  }

  void write(unsigned long column, unsigned long firstRow, unsigned long count,
             const void* source) override {
    record("write(", column, ", ", firstRow, ", ", count, ", ", valueText(column, source), ")");
    m_frame.write(column, firstRow, count, source);
  }

  void addColumn(const std::string& name, tabra::DataType type) override {
    record("addColumn(", name, ", 0x", std::hex, static_cast<unsigned int>(type.id()), ")");
    m_frame.addColumn(name, type);
  }

  void addRows(unsigned long firstRow, unsigned long count) override {
    record("addRows(", firstRow, ", ", count, ")");
    m_frame.addRows(firstRow, count);
  }

  void removeColumn(unsigned long column) override {
    record("removeColumn(", column, ")");
    m_frame.removeColumn(column);
  }

  void removeRows(unsigned long firstRow, unsigned long count) override {
    record("removeRows(", firstRow, ", ", count, ")");
    m_frame.removeRows(firstRow, count);
  }

  /// The calls so far; a const table records too.
  std::vector<std::string>& calls() { return m_calls; }

  /// The table behind, to look at without being recorded.
  tabra::MemoryDataFrame& frame() { return m_frame; }

 private:
  template <class... Parts>
  void record(const Parts&... parts) const {
    std::ostringstream text;
    (text << ... << parts);
    m_calls.push_back(text.str());
  }

  std::string valueText(unsigned long column, const void* source) const {
    std::ostringstream text;
    const auto value = [&](auto zero) {
      std::memcpy(&zero, source, sizeof(zero));
      text << zero;
    };
    switch (m_frame.columnDataType(column).id()) {
      case tabra::DataTypeId::UInt64:
        value(0UL);
        break;
      case tabra::DataTypeId::Int64:
        value(0L);
        break;
      case tabra::DataTypeId::Float64:
        value(0.0);
        break;
    }
    return text.str();
  }

  tabra::MemoryDataFrame m_frame;
  mutable std::vector<std::string> m_calls;
};

}  // namespace test
