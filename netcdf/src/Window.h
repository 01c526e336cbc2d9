#pragma once

#include <utility>
#include <vector>

#include "WindowLayout.h"

namespace quillon::netcdf {

/// The one block of a grid of values that is held in memory; moves to where it is asked.
template <class Value>
class Window {
 public:
  explicit Window(WindowLayout layout) : m_layout(std::move(layout)) {}

  /// The value at `offset` in storage order, which must be in the grid. When it is outside the
  /// window, `read(block, destination)` is called for the block around it and writes that block's
  /// values. What it throws passes through and leaves an empty window.
  template <class Read>
  const Value& at(unsigned long offset, const Read& read) {
    if (offset < m_first || offset - m_first >= m_count) {
      moveTo(offset, read);
    }
    return m_values[offset - m_first];
  }

 private:
  template <class Read>
  void moveTo(unsigned long offset, const Read& read) {
    const Block block = m_layout.blockAround(offset);
    m_count = 0;
    if (m_values.size() < block.count) {
      m_values = std::vector<Value>();  // the old room goes before the new one comes
      m_values.resize(block.count);
    }
    read(block, m_values.data());
    m_first = block.first;
    m_count = block.count;
  }

  WindowLayout m_layout;
  std::vector<Value> m_values;
  unsigned long m_first = 0;
  unsigned long m_count = 0;
};

}  // namespace quillon::netcdf
