#include "TableFrame.h"

#include <utility>

namespace quillon::tools {

TableFrame::TableFrame(std::function<std::string(std::string_view name)> escape,
                       std::function<void(unsigned long cells)> onWrite)
    : m_escape(std::move(escape)), m_onWrite(std::move(onWrite)) {}

void TableFrame::addColumn(const std::string& name, tabra::DataType type) {
  MemoryDataFrame::addColumn(m_escape(name), type);
}

void TableFrame::write(unsigned long column, unsigned long firstRow, unsigned long count,
                       const void* source) {
  MemoryDataFrame::write(column, firstRow, count, source);
  m_onWrite(count);
}

}  // namespace quillon::tools
