#pragma once

#include <object_model/Tuple.h>
#include <quillon/compare/Picture.h>

#include <string>
#include <vector>

namespace quillon::compare {

/// Collects where values differ, for a picture.
class DeltaMap {
 public:
  /// @param shape of the grid that offsets count in, dimension 0 first.
  explicit DeltaMap(const object_model::Tuple& shape);

  /// Whether there is anything to draw: two dimensions with values.
  bool isDrawn() const { return !m_cells.empty(); }

  /// The value at `offset` in storage order differs, by `delta` or, for NaN, without one.
  void add(unsigned long offset, double delta);

  /// @param names of the dimensions, dimension 0 first.
  Picture picture(const std::vector<std::string>& names) const;

 private:
  struct Side {
    std::size_t dimension = 0;
    unsigned long step = 1;  // in storage order
    unsigned long size = 1;
    unsigned long cells = 1;

    unsigned long cellOf(unsigned long offset) const;
  };
  static Picture::Side named(const Side& side, const std::vector<std::string>& names);

  Side m_across;
  Side m_down;
  std::vector<double> m_cells;
};

}  // namespace quillon::compare
