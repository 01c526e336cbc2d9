#pragma once

#include <tabra/MemoryDataFrame.h>

#include <functional>
#include <string>
#include <string_view>

namespace quillon::tools {

/// The table that a file is exported to. It escapes the names from the file for where they are to
/// be shown, and tells how many cells were written, so that progress can be shown.
class TableFrame final : public tabra::MemoryDataFrame {
 public:
  TableFrame(std::function<std::string(std::string_view name)> escape,
             std::function<void(unsigned long cells)> onWrite);

  void addColumn(const std::string& name, tabra::DataType type) override;
  void write(unsigned long column, unsigned long firstRow, unsigned long count,
             const void* source) override;

 private:
  std::function<std::string(std::string_view)> m_escape;
  std::function<void(unsigned long)> m_onWrite;
};

}  // namespace quillon::tools
