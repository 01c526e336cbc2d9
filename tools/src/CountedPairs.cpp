#include "CountedPairs.h"

#include <utility>

namespace quillon::tools {

CountedPairs::CountedPairs(const ComparisonRule& rule, Tick tick)
    : m_rule(rule), m_tick(std::move(tick)) {}

const ComparisonRule& CountedPairs::rule() const { return m_rule; }

const DiffFigures& CountedPairs::of(const object_model::Array& first,
                                    const object_model::Array& second) {
  auto found = m_figures.find(&first);
  if (found == m_figures.end()) {
    found = m_figures.emplace(&first, figuresOf(first, second, m_rule, m_tick)).first;
  }
  return found->second;
}

}  // namespace quillon::tools
