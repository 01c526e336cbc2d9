#include "NumericArray.h"

#include <netcdf.h>

#include <algorithm>
#include <type_traits>

namespace quillon::netcdf {
namespace {

using memory::ArrayBase;
using memory::Axis;

/// Numbers that stand for times.
template <class Value>
class TimeNumbers final : public NumericArray<Value>, public memory::HasTimes {
 public:
  template <class... Rest>
  explicit TimeNumbers(const Encoding& encoding, Rest&&... rest)
      : NumericArray<Value>(encoding, std::forward<Rest>(rest)...), m_units(*encoding.times) {
    if constexpr (std::is_integral_v<Value>) {
      m_missing = missingValuesOf<memory::ElementOf<Value>>(encoding.missingTimes);
    }
  }

  memory::Calendar calendar() const override { return m_units.calendar(); }

  void readTimes(const unsigned long* start, const unsigned long* extent,
                 long* destination) const override {
    std::vector<Value> numbers;
    this->m_variable.makeRoom(numbers, this->m_variable.countOf(extent));
    this->readValues(start, extent, numbers.data());
    std::transform(numbers.begin(), numbers.end(), destination,
                   [this](Value number) { return timeOf(number); });
  }

 private:
  using Element = memory::ElementOf<Value>;

  long timeOf(Element number) const {
    const bool isMissing = std::find(m_missing.begin(), m_missing.end(), number) != m_missing.end();
    return isMissing ? memory::MISSING_TIME : m_units.timeOf(number);
  }

  memory::TimeUnits m_units;
  std::vector<Element> m_missing;  // none of fractions, which are NaN then
};

template <class Value>
std::unique_ptr<ArrayBase> make(const Encoding& encoding, Variable variable,
                                const std::string& name, std::vector<Axis> axes,
                                const std::string& description) {
  Decode<Value> decode;
  if constexpr (std::is_floating_point_v<Value>) {
    decode = decoderOf<Value>(encoding);
  }
  // Values of one type may be masked where they are; a packed one is needed until it is unpacked.
  const bool isInPlace = !decode || encoding.stored == encoding.result;
  if (encoding.times) {
    return std::make_unique<TimeNumbers<Value>>(encoding, std::move(variable), std::move(decode),
                                                isInPlace, name, std::move(axes), description);
  }
  return std::make_unique<NumericArray<Value>>(encoding, std::move(variable), std::move(decode),
                                               isInPlace, name, std::move(axes), description);
}

}  // namespace

std::unique_ptr<ArrayBase> makeNumericArray(const Encoding& encoding, Variable variable,
                                            const std::string& name, std::vector<Axis> axes,
                                            const std::string& description) {
  const auto makeAs = [&](auto value) {
    return make<decltype(value)>(encoding, std::move(variable), name, std::move(axes), description);
  };
  switch (encoding.result) {
    case NC_BYTE:
      return makeAs(static_cast<signed char>(0));
    case NC_UBYTE:
      return makeAs(static_cast<unsigned char>(0));
    case NC_SHORT:
      return makeAs(short{});
    case NC_USHORT:
      return makeAs(static_cast<unsigned short>(0));
    case NC_INT:
      return makeAs(int{});
    case NC_UINT:
      return makeAs(0U);
    case NC_INT64:
      return makeAs(0L);
    case NC_UINT64:
      return makeAs(0UL);
    case NC_FLOAT:
      return makeAs(0.0F);
    case NC_DOUBLE:
      return makeAs(0.0);
    default:  // never true, never run: callers ask for types of numbers alone
      return nullptr;
  }
}

}  // namespace quillon::netcdf
