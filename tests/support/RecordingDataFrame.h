#pragma once

#include <tabra/MemoryDataFrame.h>

#include <cstring>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "support/Allocations.h"
#include "support/CallLog.h"

namespace test {

/// A table in memory that writes down every call made on it, in the form
/// `addColumn(Index [time], 0x10140)`; a value read or written is shown after its column's type.
/// What the calls need themselves is spared when allocations fail (see Allocations.h).
class RecordingDataFrame : public tabra::DataFrameView {
 public:
  RecordingDataFrame() : m_log(m_ownLog) {}
  /// Writes the calls into a log that others share. It must outlive the table.
  explicit RecordingDataFrame(CallLog& log) : m_log(log) {}

  const std::array<unsigned long, 2>& shape() const override {
    const SparedAllocations spared;
    record("shape()");
    return m_frame.shape();
  }

  const std::string& columnName(unsigned long column) const override {
    const SparedAllocations spared;
    record("columnName(", column, ")");
    return m_frame.columnName(column);
  }

  const std::string& columnUnit(unsigned long column) const override {
    const SparedAllocations spared;
    record("columnUnit(", column, ")");
    return m_frame.columnUnit(column);
  }

  void setColumnUnit(unsigned long column, const std::string& unit) override {
    const SparedAllocations spared;
    record("setColumnUnit(", column, ", ", unit, ")");
    m_frame.setColumnUnit(column, unit);
  }

  tabra::DataType columnDataType(unsigned long column) const override {
    const SparedAllocations spared;
    record("columnDataType(", column, ")");
    return m_frame.columnDataType(column);
  }

  void read(unsigned long column, unsigned long firstRow, unsigned long count,
            void* destination) const override {
    const SparedAllocations spared;
    record("read(", column, ", ", firstRow, ", ", count,
           destination == nullptr ? ", null)" : ", buffer)");
    m_frame.read(column, firstRow, count, destination);
  }

  void write(unsigned long column, unsigned long firstRow, unsigned long count,
             const void* source) override {
    const SparedAllocations spared;
    record("write(", column, ", ", firstRow, ", ", count, ", ", valueText(column, source), ")");
    m_frame.write(column, firstRow, count, source);
  }

  void addColumn(const std::string& name, tabra::DataType type) override {
    const SparedAllocations spared;
    record("addColumn(", name, ", 0x", std::hex, static_cast<unsigned int>(type.id()), ")");
    m_frame.addColumn(name, type);
  }

  void addRows(unsigned long firstRow, unsigned long count) override {
    const SparedAllocations spared;
    record("addRows(", firstRow, ", ", count, ")");
    m_frame.addRows(firstRow, count);
  }

  void removeColumn(unsigned long column) override {
    const SparedAllocations spared;
    record("removeColumn(", column, ")");
    m_frame.removeColumn(column);
  }

  void removeRows(unsigned long firstRow, unsigned long count) override {
    const SparedAllocations spared;
    record("removeRows(", firstRow, ", ", count, ")");
    m_frame.removeRows(firstRow, count);
  }

  /// The calls so far; a const table records too.
  const std::vector<std::string>& calls() const { return m_log.calls(); }
  void forgetCalls() { m_log.reset(); }

  /// The table behind, to look at without being recorded.
  tabra::MemoryDataFrame& frame() { return m_frame; }

 private:
  template <class... Parts>
  void record(const Parts&... parts) const {
    std::ostringstream text;
    (text << ... << parts);
    m_log.note(text.str());
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
  CallLog m_ownLog;
  CallLog& m_log;
};

}  // namespace test
