#include "TableFrame.h"

#include <utility>

#include "Wording.h"

namespace quillon::tools {

TableFrame::TableFrame(std::function<void(unsigned long cells)> onWrite)
    : m_onWrite(std::move(onWrite)) {}

void TableFrame::addColumn(const std::string& name, tabra::DataType type) {
  MemoryDataFrame::addColumn(escaped(name), type);
}

void TableFrame::write(unsigned long column, unsigned long firstRow, unsigned long count,
                       const void* source) {
  MemoryDataFrame::write(column, firstRow, count, source);
  m_onWrite(count);
}

}  // namespace quillon::tools
