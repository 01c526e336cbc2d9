#pragma once

#include <object_model/Array.h>

#include <map>

#include "DiffFigures.h"

namespace quillon::tools {

/// The figures of pairs of arrays. Each pair is counted through once, when it is first asked for.
class CountedPairs {
 public:
  /// Borrows `rule`. `tick` is told how far the counting is.
  CountedPairs(const ComparisonRule& rule, Tick tick);

  const ComparisonRule& rule() const;

  /// Those of two arrays of the same type and shape. An array is only ever compared with one other,
  /// and always as the same side.
  /// @throws what figuresOf() throws.
  const DiffFigures& of(const object_model::Array& first, const object_model::Array& second);

 private:
  const ComparisonRule& m_rule;
  Tick m_tick;
  std::map<const object_model::Array*, DiffFigures> m_figures;  // by the first array
};

}  // namespace quillon::tools
