#pragma once

#include <quillon/memory/Values.h>

#include <mutex>
#include <utility>
#include <vector>

namespace quillon::netcdf {

/// The one block of a grid of values that is held in memory; moves to where it is asked.
///
/// Threads: at() may run in several at a time. Those that ask for another block wait for each
/// other.
template <class Value>
class Window {
 public:
  explicit Window(memory::BlockLayout layout) : m_layout(std::move(layout)) {}

  /// The value at `offset` in storage order, which must be in the grid. When it is outside the
  /// window, `read(block, values)` is called for the block around it: it makes `values` long enough
  /// where they are not, writes the block's values and returns how many bytes it read. What it
  /// throws passes through and leaves an empty window. `report(bytes)` comes afterwards, when
  /// neither this window is locked nor anything else that `read` locks.
  template <class Read, class Report>
  Value at(unsigned long offset, const Read& read, const Report& report) {
    std::unique_lock<std::mutex> lock(m_mutex);
    if (offset >= m_first && offset - m_first < m_count) {
      return m_values[offset - m_first];
    }
    const unsigned long bytes = moveTo(offset, read);
    Value value = m_values[offset - m_first];
    lock.unlock();
    report(bytes);
    return value;
  }

 private:
  template <class Read>
  unsigned long moveTo(unsigned long offset, const Read& read) {
    const memory::Block block = m_layout.blockAt(offset);
    m_count = 0;
    if (m_values.size() < block.count) {
      m_values = std::vector<Value>();  // the old room goes before the new one comes
    }
    const unsigned long bytes = read(block, m_values);
    m_first = block.first;
    m_count = block.count;
    return bytes;
  }

  std::mutex m_mutex;
  memory::BlockLayout m_layout;
  std::vector<Value> m_values;
  unsigned long m_first = 0;
  unsigned long m_count = 0;
};

}  // namespace quillon::netcdf
