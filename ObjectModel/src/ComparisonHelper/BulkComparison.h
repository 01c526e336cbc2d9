#pragma once

#include <object_model/Array.h>

#include <algorithm>
#include <array>
#include <memory>
#include <new>

#include "ComparisonHelper/ArrayPair.h"
#include "ComparisonHelper/BulkBlocks.h"
#include "ComparisonHelper/BulkGrid.h"
#include "ComparisonHelper/Criterion.h"
#include "ComparisonHelper/Difference.h"
#include "ComparisonHelper/PlacedRows.h"
#include "ComparisonHelper/StoredValues.h"

namespace object_model::helper {

/// Compares two arrays that offer bulk values, under one rule. Which calls they see, and in which
/// order their values are looked at, is none of the contract; what is found is.
template <class Element, class Rule>
class BulkComparison {
 public:
  using Value = typename Element::Value;

  BulkComparison(const Rule& rule, Difference<Value>& last) : m_rule(rule), m_last(last) {}

  /// Finds the last difference. False, with nothing read, when the values cannot be had in bulk.
  bool run(const ArrayPair& pair) {
    const BulkGrid grid(pair.shape);
    return grid.size() > 0 && findSources(pair) && hasKeptShape(pair, grid) && compare(grid);
  }

 private:
  // What is compared at once, and converted into buffers, stays in the first-level cache.
  static constexpr std::size_t BATCH = 512;
  using Buffer = std::array<Value, BATCH>;

  bool findSources(const ArrayPair& pair) {
    m_first = bulkSourceOf<Value>(pair.first);
    if (m_first.values == nullptr) {
      return false;
    }
    m_second = bulkSourceOf<Value>(pair.second);
    return m_second.values != nullptr;
  }

  // An array may have changed since the shapes were compared.
  static bool hasKeptShape(const ArrayPair& pair, const BulkGrid& grid) {
    return grid.isOf(pair.first.size()) && grid.isOf(pair.second.size());
  }

  bool compare(const BulkGrid& grid) {
    const ValuesInPlace first = m_first.values->valuesInPlace();
    const ValuesInPlace second = m_second.values->valuesInPlace();
    if (first.first == nullptr || second.first == nullptr) {
      return compareRead(grid);
    }
    if (first.strides == nullptr || second.strides == nullptr) {
      return false;
    }
    comparePlaced(grid, first, second);
    return true;
  }

  /// From the last row to the first, up to one with a difference, which no array can notice.
  void comparePlaced(const BulkGrid& grid, const ValuesInPlace& first,
                     const ValuesInPlace& second) {
    PlacedRows rows(grid, first, second);
    while (!compareRun(grid, rows.first(), rows.second(), rows.offset(), rows.length()) &&
           rows.previous()) {
    }
  }

  /// Forwards, so that the differences before a block that cannot be read are found.
  bool compareRead(const BulkGrid& grid) {
    const unsigned long* const chunks = m_first.values->chunkExtents();
    BulkBlocks blocks(grid, chunks != nullptr ? chunks : m_second.values->chunkExtents());
    const auto first = bufferFor(m_first, blocks);
    const auto second = bufferFor(m_second, blocks);
    if (first == nullptr || second == nullptr) {
      return false;
    }
    do {
      m_first.values->readValues(blocks.start(), blocks.extent(), first.get());
      m_second.values->readValues(blocks.start(), blocks.extent(), second.get());
      compareRun(grid, runIn(m_first, first.get()), runIn(m_second, second.get()), blocks.offset(),
                 blocks.size());
    } while (blocks.next());
    return true;
  }

  /// Null when memory is too short, which the accessors do without.
  static std::unique_ptr<char[]> bufferFor(const BulkSource<Value>& source,
                                           const BulkBlocks& blocks) {
    return std::unique_ptr<char[]>(
        new (std::nothrow) char[blocks.largest() * source.storage.bytes]);
  }

  static Run runIn(const BulkSource<Value>& source, const char* buffer) {
    return {buffer, static_cast<long>(source.storage.bytes)};
  }

  /// Looks for the last difference among `count` values that follow `offset` in storage order.
  bool compareRun(const BulkGrid& grid, const Run& first, const Run& second, unsigned long offset,
                  unsigned long count) {
    while (count > 0) {
      const std::size_t size = count % BATCH == 0 ? BATCH : count % BATCH;
      count -= size;
      Buffer firstBuffer;
      Buffer secondBuffer;
      const Value* a = m_first.storage.load(from(first, count), size, firstBuffer.data());
      const Value* b = m_second.storage.load(from(second, count), size, secondBuffer.data());
      if (!areAllSame(a, b, size)) {
        const std::size_t index = lastDifferent(a, b, size);
        m_last = {true, grid.indicesAt(offset + count + index), a[index], b[index]};
        return true;
      }
    }
    return false;
  }

  static Run from(const Run& run, unsigned long index) {
    return {run.first + static_cast<long>(index) * run.stride, run.stride};
  }

  /// What is equal is the same under every rule, which saves most values the rule.
  bool areAllSame(const Value* a, const Value* b, std::size_t count) const {
    return areAllSameUnder(ExactRule{}, a, b, count) ||
           // never true, never false: decided when compiled
           (!std::is_same_v<Rule, ExactRule> && areAllSameUnder(m_rule, a, b, count));
  }

  // Counted without a branch, so that the loop can be vectorised.
  template <class SomeRule>
  static bool areAllSameUnder(const SomeRule& rule, const Value* a, const Value* b,
                              std::size_t count) {
    unsigned long different = 0;
    for (std::size_t k = 0; k < count; ++k) {
      different += rule.template same<Element>(a[k], b[k]) ? 0U : 1U;
    }
    return different == 0;
  }

  std::size_t lastDifferent(const Value* a, const Value* b, std::size_t count) const {
    do {
      --count;
    } while (m_rule.template same<Element>(a[count], b[count]));
    return count;
  }

  const Rule& m_rule;
  Difference<Value>& m_last;
  BulkSource<Value> m_first;
  BulkSource<Value> m_second;
};

}  // namespace object_model::helper
