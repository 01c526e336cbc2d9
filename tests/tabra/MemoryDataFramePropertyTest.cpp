#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>
#include <tabra/MemoryDataFrame.h>

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace tabra {
namespace {

using Cells = std::vector<unsigned long>;

struct ModelColumn {
  int identity;
  std::string unit;
  Cells cells;
};

/// The table's rules in the plainest form: vectors, and the columns' order before a run of removals
/// written down whole.
class Model {
 public:
  std::vector<ModelColumn> columns;
  unsigned long rows = 0;

  void endRun() { m_before.clear(); }

  void addColumn() {
    endRun();
    columns.push_back({m_nextIdentity++, "", Cells(rows)});
  }

  void removeColumn(unsigned long column) {
    if (m_before.empty()) {
      for (const ModelColumn& each : columns) {
        m_before.push_back(each.identity);
      }
    }
    require(column < m_before.size());
    const auto found = std::find_if(columns.begin(), columns.end(), [&](const ModelColumn& each) {
      return each.identity == m_before[column];
    });
    require(found != columns.end());
    columns.erase(found);
  }

  void addRows(unsigned long first, unsigned long count) {
    endRun();
    require(first <= rows);
    for (ModelColumn& column : columns) {
      column.cells.insert(column.cells.begin() + static_cast<std::ptrdiff_t>(first), count, 0);
    }
    rows += count;
  }

  void removeRows(unsigned long first, unsigned long count) {
    endRun();
    require(first + count <= rows);
    for (ModelColumn& column : columns) {
      const auto begin = column.cells.begin() + static_cast<std::ptrdiff_t>(first);
      column.cells.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
    }
    rows -= count;
  }

  void write(unsigned long column, unsigned long first, const Cells& values) {
    endRun();
    require(column < columns.size() && first + values.size() <= rows);
    std::copy(values.begin(), values.end(),
              columns[column].cells.begin() + static_cast<std::ptrdiff_t>(first));
  }

  void setUnit(unsigned long column, const std::string& unit) {
    endRun();
    require(column < columns.size());
    columns[column].unit = unit;
  }

 private:
  static void require(bool condition) {
    if (!condition) {
      throw std::out_of_range("model");
    }
  }

  std::vector<int> m_before;  // identities when the run of removals began; empty outside a run
  int m_nextIdentity = 0;
};

enum class Kind { AddColumn, RemoveColumn, AddRows, RemoveRows, Write, SetUnit };

struct Command {
  Kind kind;
  unsigned long column, first, count;
};

std::ostream& operator<<(std::ostream& out, const Command& command) {
  return out << static_cast<int>(command.kind) << '(' << command.column << ", " << command.first
             << ", " << command.count << ')';
}

rc::Gen<Command> anyCommand() {
  return rc::gen::build<Command>(
      rc::gen::set(&Command::kind, rc::gen::weightedElement<Kind>({{3, Kind::AddColumn},
                                                                   {4, Kind::RemoveColumn},
                                                                   {3, Kind::AddRows},
                                                                   {2, Kind::RemoveRows},
                                                                   {3, Kind::Write},
                                                                   {1, Kind::SetUnit}})),
      rc::gen::set(&Command::column, rc::gen::inRange(0UL, 5UL)),
      rc::gen::set(&Command::first, rc::gen::inRange(0UL, 6UL)),
      rc::gen::set(&Command::count, rc::gen::inRange(0UL, 4UL)));
}

template <class Call>
bool throwsOutOfRange(const Call& call) {
  try {
    call();
  } catch (const std::out_of_range&) {
    return true;
  }
  return false;
}

void runOn(Model& model, const Command& command, const Cells& values) {
  switch (command.kind) {
    case Kind::AddColumn:
      return model.addColumn();
    case Kind::RemoveColumn:
      return model.removeColumn(command.column);
    case Kind::AddRows:
      return model.addRows(command.first, command.count);
    case Kind::RemoveRows:
      return model.removeRows(command.first, command.count);
    case Kind::Write:
      return model.write(command.column, command.first, values);
    case Kind::SetUnit:
      return model.setUnit(command.column, std::to_string(command.first));
  }
}

void runOn(MemoryDataFrame& frame, const Command& command, const Cells& values) {
  switch (command.kind) {
    case Kind::AddColumn:
      return frame.addColumn("column", DataType(DataTypeId::UInt64));
    case Kind::RemoveColumn:
      return frame.removeColumn(command.column);
    case Kind::AddRows:
      return frame.addRows(command.first, command.count);
    case Kind::RemoveRows:
      return frame.removeRows(command.first, command.count);
    case Kind::Write:
      return frame.write(command.column, command.first, values.size(), values.data());
    case Kind::SetUnit:
      return frame.setUnit(command.column, std::to_string(command.first));
  }
}

void assertSame(const MemoryDataFrame& frame, Model& model) {
  model.endRun();  // as looking at the table does
  RC_ASSERT(frame.shape()[0] == model.columns.size());
  RC_ASSERT(frame.shape()[1] == model.rows);
  for (unsigned long k = 0; k < model.columns.size(); ++k) {
    RC_ASSERT(frame.columnUnit(k) == model.columns[k].unit);
    Cells cells(model.rows);
    frame.read(k, 0, model.rows, cells.data());
    RC_ASSERT(cells == model.columns[k].cells);
  }
}

RC_GTEST_PROP(MemoryDataFramePropertyTest, BehavesAsVectorsOfCells, ()) {
  const auto commands = *rc::gen::container<std::vector<Command>>(anyCommand());
  MemoryDataFrame frame;
  Model model;
  unsigned long fresh = 1;
  for (const Command& command : commands) {
    Cells values(command.count);
    std::generate(values.begin(), values.end(), [&] { return fresh++; });
    RC_ASSERT(throwsOutOfRange([&] { runOn(frame, command, values); }) ==
              throwsOutOfRange([&] { runOn(model, command, values); }));
    if (command.kind != Kind::RemoveColumn) {
      assertSame(frame, model);
    }
  }
  assertSame(frame, model);
}

}  // namespace
}  // namespace tabra
