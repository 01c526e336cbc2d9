#include <quillon/compare/Figures.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <stdexcept>

#include "PathRules.h"
#include "Tally.h"
#include "ValuesComparison.h"

namespace quillon::compare {
namespace {

/// The sum of two numbers, and what its rounding leaves out.
struct ExactSum {
  double sum;
  double rest;
};

ExactSum exactSum(double a, double b) {
  const double sum = a + b;
  if (!std::isfinite(sum)) {
    return {sum, 0};
  }
  const double shareOfB = sum - a;
  const double shareOfA = sum - shareOfB;
  return {sum, (a - shareOfA) + (b - shareOfB)};
}

ExactSum exactSum(const ExactSum& a, const ExactSum& b) {
  const ExactSum total = exactSum(a.sum, b.sum);
  return exactSum(total.sum, total.rest + (a.rest + b.rest));
}

/// The distance of two integers of 64 bits, which their delta may have rounded; 0 for others.
unsigned long wideDistance(const Pair& pair) {
  if (const auto* const a = std::get_if<long>(&pair.first)) {
    const auto* const b = std::get_if<long>(&pair.second);
    return b == nullptr ? 0 : distanceOf(*a, *b);
  }
  const auto* const a = std::get_if<unsigned long>(&pair.first);
  const auto* const b = std::get_if<unsigned long>(&pair.second);
  return a == nullptr || b == nullptr ? 0 : distanceOf(*a, *b);
}

/// The greater one, of which either may be none.
double greaterOf(double a, double b) { return std::isnan(a) || b > a ? b : a; }

GridPlace placeIn(const std::vector<unsigned long>& start, const std::vector<unsigned long>& shape,
                  const object_model::Array& block) {
  const object_model::Tuple& extent = block.size();
  if (start.empty() && shape.empty()) {
    return wholeGrid(extent);
  }
  if (start.size() != extent.size() || shape.size() != extent.size()) {
    throw std::invalid_argument("Start and shape of the grid need " +
                                std::to_string(extent.size()) + " numbers, one for each dimension");
  }
  for (std::size_t k = 0; k < start.size(); ++k) {
    if (start[k] > shape[k] || extent[k] > shape[k] - start[k]) {
      throw std::invalid_argument("The block from " + std::to_string(start[k]) + " on, of " +
                                  std::to_string(extent[k]) + ", does not lie in dimension " +
                                  std::to_string(k) + " of the grid, of " +
                                  std::to_string(shape[k]));
    }
  }
  return placeInGrid(start, shape);
}

}  // namespace

void addExactly(double number, Figures& figures) {
  const ExactSum total = exactSum({figures.sum, figures.rest}, {number, 0});
  figures.sum = total.sum;
  figures.rest = total.rest;
}

double Figures::mean() const {
  return deltas == 0 ? std::numeric_limits<double>::quiet_NaN() : sum / static_cast<double>(deltas);
}

bool isBefore(const Pair& a, const Pair& b) {
  if (std::isnan(a.delta) != std::isnan(b.delta)) {
    return std::isnan(b.delta);
  }
  if (!std::isnan(a.delta)) {
    if (a.delta != b.delta) {
      return a.delta > b.delta;
    }
    const unsigned long left = wideDistance(a);
    const unsigned long right = wideDistance(b);
    if (left != right) {
      return left > right;
    }
  }
  return a.offset < b.offset;
}

Figures merge(const Figures& a, const Figures& b) {
  Figures merged;
  merged.values = a.values + b.values;
  merged.count = a.count + b.count;
  merged.missing = a.missing + b.missing;
  merged.deltas = a.deltas + b.deltas;
  const ExactSum total = exactSum({a.sum, a.rest}, {b.sum, b.rest});
  merged.sum = total.sum;
  merged.rest = total.rest;
  merged.largestRelative = greaterOf(a.largestRelative, b.largestRelative);
  merged.kept = std::min(a.kept, b.kept);
  std::merge(a.largest.begin(), a.largest.end(), b.largest.begin(), b.largest.end(),
             std::back_inserter(merged.largest), isBefore);
  if (merged.largest.size() > merged.kept) {
    merged.largest.resize(merged.kept);
  }
  return merged;
}

Figures figures(const object_model::Array& first, const object_model::Array& second,
                const Options& options, const std::vector<unsigned long>& start,
                const std::vector<unsigned long>& shape) {
  requireSound(options.tolerance);
  if (!memory::haveSameShape(first, second)) {
    throw std::invalid_argument("Blocks of different shapes have no figures");
  }
  if (!areComparable(first.getElementType(), second.getElementType())) {
    throw std::invalid_argument("Values of " + memory::nameOf(first.getElementType()) + " and " +
                                memory::nameOf(second.getElementType()) + " have no figures");
  }
  const Rule rule{options.tolerance.absolute, options.tolerance.relative, options.nanEqual};
  return figuresOf(first, second, {rule, options.largest, options.progress},
                   placeIn(start, shape, first));
}

}  // namespace quillon::compare
