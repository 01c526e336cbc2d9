// The law: whatever numbers two arrays hold, of whichever types and however they offer them, the
// figures of their differences are those of the plain rule, which looks at one pair after the
// other; and so are those of two parts of them, merged.

#include <quillon/compare/Figures.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "Input.h"
#include "Law.h"
#include "compare/Oracle.h"

namespace quillon::fuzz {
namespace {

using compare::Figures;
using compare::Options;
using object_model::Array;

/// Makes arrays and options of an input.
class Pairs {
 public:
  explicit Pairs(Input input) : m_input(std::move(input)) {
    for (unsigned long rest = m_input.below(4); rest > 0; --rest) {
      m_shape.push_back(m_input.below(6));
    }
    m_options.tolerance.absolute = m_input.oneOf(TOLERANCES);
    m_options.tolerance.relative = m_input.oneOf(TOLERANCES);
    for (double* tolerance : {&m_options.tolerance.absolute, &m_options.tolerance.relative}) {
      *tolerance = *tolerance >= 0 ? *tolerance : 0;
    }
    m_options.nanEqual = m_input.below(2) == 0;
    m_options.largest = m_input.below(8);
  }

  void check() {
    switch (m_input.below(9)) {
      case 0:
        return checkOf<double, double>();
      case 1:
        return checkOf<float, float>();
      case 2:
        return checkOf<float, double>();
      case 3:
        return checkOf<long, long>();
      case 4:
        return checkOf<unsigned long, unsigned long>();
      case 5:
        return checkOf<short, unsigned char>();
      case 6:
        return checkOf<long, unsigned long>();
      case 7:
        return checkOf<int, double>();
      default:
        return checkOf<std::complex<double>, std::complex<float>>();
    }
  }

 private:
  inline static const std::vector<double> TOLERANCES = {0, 0.5, 0.1, 1, 3, 1e300};

  template <class T>
  std::vector<T> values() {
    static const std::vector<T> specials = compare::specials<T>();
    std::vector<T> values;
    std::generate_n(std::back_inserter(values), compare::productOf(m_shape),
                    [this] { return m_input.oneOf(specials); });
    return values;
  }

  /// The array of the values from `start` on along one dimension.
  template <class T>
  std::unique_ptr<Array> part(const std::vector<T>& values, unsigned long dimension,
                              unsigned long start, unsigned long count) {
    static constexpr compare::Way WAYS[] = {compare::Way::InPlace, compare::Way::Transposed,
                                            compare::Way::InBlocks};
    std::vector<unsigned long> shape = m_shape;
    std::vector<T> chosen = values;
    if (!shape.empty()) {
      shape[dimension] = count;
      unsigned long step = 1;
      for (unsigned long k = 0; k < dimension; ++k) {
        step *= m_shape[k];
      }
      chosen.clear();
      for (unsigned long offset = 0; offset < values.size(); ++offset) {
        const unsigned long index = offset / step % m_shape[dimension];
        if (index >= start && index - start < count) {
          chosen.push_back(values[offset]);
        }
      }
    }
    return std::make_unique<compare::StoredArray<T>>("a", shape, std::move(chosen),
                                                     WAYS[m_input.below(std::size(WAYS))]);
  }

  template <class T, class U>
  void checkOf() {
    const std::vector<T> some = values<T>();
    const std::vector<U> others = values<U>();
    const unsigned long dimension = m_shape.empty() ? 0 : m_input.below(m_shape.size());
    const unsigned long extent = m_shape.empty() ? 0 : m_shape[dimension];
    const auto figuresOf = [&](unsigned long start, unsigned long count) {
      std::vector<unsigned long> starts(m_shape.size(), 0);
      if (!starts.empty()) {
        starts[dimension] = start;
      }
      return compare::figures(*part(some, dimension, start, count),
                              *part(others, dimension, start, count), m_options, starts, m_shape);
    };
    const Figures expected = compare::Oracle(*part(some, dimension, 0, extent),
                                             *part(others, dimension, 0, extent), m_options)
                                 .figures();
    requireSame(figuresOf(0, extent), expected);
    if (extent > 0) {
      const unsigned long border = m_input.below(extent + 1);
      const Figures before = figuresOf(0, border);
      const Figures behind = figuresOf(border, extent - border);
      requireSame(m_input.below(2) == 0 ? merge(before, behind) : merge(behind, before), expected);
    }
  }

  static void requireSame(const Figures& found, const Figures& expected) {
    requireEqual(compare::differenceOf(found, expected), std::string());
  }

  Input m_input;
  std::vector<unsigned long> m_shape;
  Options m_options;
};

}  // namespace
}  // namespace quillon::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  quillon::fuzz::Pairs(quillon::fuzz::Input(bytes, size)).check();
  return 0;
}
