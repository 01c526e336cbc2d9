#pragma once

#include <tabra/MemoryDataFrame.h>

#include <functional>
#include <string>

namespace quillon::tools {

/// The table that a file is exported to. Names from the file reach it escaped, and it tells how
/// many cells were written, so that progress can be shown.
class TableFrame final : public tabra::MemoryDataFrame {
 public:
  explicit TableFrame(std::function<void(unsigned long cells)> onWrite);

  void addColumn(const std::string& name, tabra::DataType type) override;
  void write(unsigned long column, unsigned long firstRow, unsigned long count,
             const void* source) override;

 private:
  std::function<void(unsigned long)> m_onWrite;
};

}  // namespace quillon::tools
