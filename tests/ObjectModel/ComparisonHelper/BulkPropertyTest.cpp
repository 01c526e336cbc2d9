#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <memory>

#include "ObjectModel/ComparisonHelper/BulkArray.h"
#include "ObjectModel/ComparisonHelper/Palette.h"
#include "ObjectModel/ComparisonHelper/PlainComparison.h"
#include "support/LyingInput.h"
#include "support/Properties.h"

namespace quillon::test {
namespace {

using object_model::Array;
using ::test::pick;

template <class Stored>
Stored anyStored() {
  using Element = memory::ElementOf<Stored>;
  if constexpr (std::is_same_v<Stored, bool>) {
    return pick(2) == 1;
  } else if constexpr (std::is_same_v<Element, std::complex<double>>) {
    using Part = typename Stored::value_type;
    const Part real = anyStored<Part>();
    return {real, anyStored<Part>()};
  } else {
    const auto& values = palette<Element>();
    return static_cast<Stored>(
        values[static_cast<std::size_t>(pick(static_cast<int>(values.size())))]);
  }
}

/// 0 to 6 dimensions, up to some hundreds of values.
Numbers anyShape() {
  static const std::vector<int> LARGEST = {0, 1500, 40, 11, 6, 5, 4};
  Numbers shape(static_cast<std::size_t>(pick(7)));
  for (unsigned long& extent : shape) {
    extent = pick(20) == 19 ? static_cast<unsigned long>(pick(2))
                            : static_cast<unsigned long>(1 + pick(LARGEST[shape.size()]));
  }
  return shape;
}

/// Any order of the dimensions in memory, with gaps, some backwards, some without a step at all.
Places anyPlaces(const Numbers& shape) {
  std::vector<std::size_t> order(shape.size());
  std::iota(order.begin(), order.end(), 0U);
  for (std::size_t k = order.size(); k > 1 && pick(2) == 1; --k) {
    std::swap(order[k - 1], order[static_cast<std::size_t>(pick(static_cast<int>(k)))]);
  }
  Places places = {0, std::vector<long>(shape.size()), 1};
  for (const std::size_t k : order) {
    const auto gap = static_cast<std::size_t>(pick(8) == 7 ? 2 : 0);
    const bool still = pick(16) == 15;
    const bool backwards = pick(5) == 4;
    const auto step = still ? 0L : static_cast<long>(places.size);
    places.strides[k] = backwards ? -step : step;
    if (shape[k] > 0 && !still) {
      places.first += backwards ? step * static_cast<long>(shape[k] - 1) : 0;
      places.size = places.size * shape[k] + gap;
    }
  }
  return places;
}

/// One array in two forms: with bulk values, in place, to be read, or not at all; and by accessors.
struct Twin {
  std::unique_ptr<Array> any;
  std::unique_ptr<Array> plain;
};

template <class Stored>
Twin twinOf(const Numbers& shape, const std::vector<Stored>& values) {
  const Places places = anyPlaces(shape);
  Twin twin;
  twin.plain = std::make_unique<PlacedArray<Stored>>(shape, places, values);
  const int kind = pick(5);
  if (kind == 0) {
    twin.any = std::make_unique<PlacedArray<Stored>>(shape, places, values);
    return twin;
  }
  auto bulk = std::make_unique<BulkArray<Stored>>(shape, places, values);
  bulk->inPlace = kind < 3;
  if (kind == 4) {
    bulk->chunks = Numbers(shape.size(), static_cast<unsigned long>(1 + pick(7)));
  }
  twin.any = std::move(bulk);
  return twin;
}

template <class Stored>
std::vector<Stored> anyValues(const Numbers& shape) {
  std::vector<Stored> some(10);
  std::generate(some.begin(), some.end(), anyStored<Stored>);
  std::vector<Stored> values(elementsOf(shape));
  std::size_t k = 0;
  std::generate(values.begin(), values.end(), [&] { return some[k++ % some.size()]; });
  return values;
}

template <class Stored, class Other>
void requireBulkDoesAsPlain() {
  const Numbers shape = anyShape();
  const auto firsts = anyValues<Stored>(shape);
  std::vector<Other> seconds(firsts.size());
  std::transform(firsts.begin(), firsts.end(), seconds.begin(),
                 [](const Stored& value) { return static_cast<Other>(value); });
  for (int changes = pick(4); changes > 0 && !seconds.empty(); --changes) {
    seconds[static_cast<std::size_t>(pick(static_cast<int>(seconds.size())))] = anyStored<Other>();
  }
  const Twin first = twinOf(shape, firsts);
  const Twin second = twinOf(shape, seconds);
  const auto mode = MODES[static_cast<std::size_t>(pick(pick(8) == 7 ? 6 : 3))];
  const double tolerance =
      TOLERANCES[static_cast<std::size_t>(pick(static_cast<int>(TOLERANCES.size())))];
  const bool explains = pick(5) != 4;
  const Outcome expected = outcomeOf(
      [&](std::string* message) {
        return plain::areSameArrays(*first.plain, *second.plain, mode, tolerance, message);
      },
      explains);
  const Outcome actual = outcomeOf(
      [&](std::string* message) {
        return object_model::helper::areSameArrays(*first.any, *second.any, mode, tolerance,
                                                   message);
      },
      explains);
  RC_ASSERT(actual == expected);
  RC_CLASSIFY(expected.same == true, "same");
  RC_CLASSIFY(expected.same == false, "different");
  RC_CLASSIFY(!expected.thrown.empty(), "threw");
}

RC_GTEST_PROP(BulkProperty, ComparesAsThePlainComparisonSays, ()) {
  switch (pick(12)) {
    case 0:
      return requireBulkDoesAsPlain<signed char, long>();
    case 1:
      return requireBulkDoesAsPlain<int, short>();
    case 2:
      return requireBulkDoesAsPlain<long, long>();
    case 3:
      return requireBulkDoesAsPlain<unsigned char, unsigned int>();
    case 4:
      return requireBulkDoesAsPlain<unsigned short, unsigned long>();
    case 5:
      return requireBulkDoesAsPlain<unsigned long, unsigned long>();
    case 6:
      return requireBulkDoesAsPlain<float, double>();
    case 7:
      return requireBulkDoesAsPlain<float, float>();
    case 8:
      return requireBulkDoesAsPlain<std::complex<float>, std::complex<double>>();
    case 9:
      return requireBulkDoesAsPlain<std::complex<double>, std::complex<double>>();
    case 10:
      return requireBulkDoesAsPlain<bool, bool>();
    default:
      return requireBulkDoesAsPlain<double, double>();
  }
}

/// An array with bulk values that has another shape, and its values elsewhere, whenever it is asked
/// for its shape.
class ChangingBulkArray : public memory::ArrayBase, public object_model::BulkValues {
 public:
  explicit ChangingBulkArray(::test::Whims& whims)
      : ArrayBase("A", object_model::ElementType::Int, axes({8, 8})), m_whims(whims) {}

  const object_model::Tuple& size() const override {
    static const std::vector<Numbers> SHAPES = {{8, 8}, {8, 9}, {9, 8}, {70}, {4, 4, 4}, {0}, {}};
    m_whims.perhapsThrow();
    const Numbers& shape = m_whims.oneOf(SHAPES);
    m_values = std::make_unique<long[]>(elementsOf(shape));
    m_strides = packed(shape).strides;
    for (long& stride : m_strides) {
      stride *= 8;
    }
    m_shape = object_model::TupleX(shape.data(), shape.size());
    return m_shape;
  }
  long getValueAsInt(const object_model::Tuple& /*index*/) const override {
    return static_cast<long>(m_whims.pick(2));
  }
  object_model::StoredType storedType() const override {
    m_whims.perhapsThrow();
    return m_whims.oneOf<object_model::StoredType>(
        {object_model::StoredType::Int64, object_model::StoredType::Float64});
  }
  object_model::ValuesInPlace valuesInPlace() const override {
    m_whims.perhapsThrow();
    return m_whims.pick(2) == 0 ? object_model::ValuesInPlace{m_values.get(), m_strides.data()}
                                : object_model::ValuesInPlace();
  }
  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    m_whims.perhapsThrow();
    std::size_t count = 1;
    for (unsigned long k = 0; k < m_shape.size(); ++k) {
      if (start[k] + extent[k] > m_shape[k]) {
        throw std::logic_error(::test::LyingArray::NO_SUCH_POSITION);
      }
      count *= extent[k];
    }
    std::fill_n(static_cast<long*>(destination), count, 0L);
  }

 private:
  ::test::Whims& m_whims;
  mutable std::unique_ptr<long[]> m_values;
  mutable std::vector<long> m_strides;
  mutable object_model::TupleX m_shape{0UL};
};

RC_GTEST_PROP(BulkProperty, ChangingArraysLeadNoComparisonAstray, ()) {
  ::test::LyingInput input;
  const ChangingBulkArray first(input.whims);
  const ChangingBulkArray second(input.whims);
  const auto mode = static_cast<ComparisonType>(pick(4));
  std::string message;
  input.endures([&] { object_model::helper::areSameArrays(first, second, mode, 0.5, &message); });
}

}  // namespace
}  // namespace quillon::test
