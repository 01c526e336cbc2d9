#pragma once

#include <quillon/memory/ArrayBase.h>

#include <complex>
#include <string>
#include <vector>

namespace benchmarks {

/// An array whose accessor does next to nothing, so that what the library adds to it shows most: no
/// position is checked, and few values stand for many. They repeat along the elements (dimension 0
/// varying fastest) and stay in the cache.
///
/// Defined apart from its users, so that no accessor is inlined into a measured loop.
template <class T>
class UncheckedArray : public quillon::memory::ArrayBase {
 public:
  /// `values` are a power of two in number.
  UncheckedArray(const std::string& name, const std::vector<quillon::memory::Axis>& axes,
                 std::vector<T> values);
  UncheckedArray(UncheckedArray&& other) noexcept;
  ~UncheckedArray() override;

  double getValueAsDouble(const object_model::Tuple& index) const override;
  unsigned long getValueAsUInt(const object_model::Tuple& index) const override;
  long getValueAsInt(const object_model::Tuple& index) const override;
  std::string getValueAsString(const object_model::Tuple& index) const override;
  std::complex<double> getValueAsComplex(const object_model::Tuple& index) const override;

 private:
  const T& value(const object_model::Tuple& index) const;

  std::vector<T> m_values;
  std::vector<unsigned long> m_strides;
};

extern template class UncheckedArray<unsigned long>;
extern template class UncheckedArray<long>;
extern template class UncheckedArray<double>;
extern template class UncheckedArray<std::complex<double>>;
extern template class UncheckedArray<std::string>;

/// The element of `array` at `position`, through the accessor for `T`.
template <class T>
T read(const object_model::Array& array, const object_model::Tuple& position) {
  if constexpr (std::is_same_v<T, unsigned long>) {
    return array.getValueAsUInt(position);
  } else if constexpr (std::is_same_v<T, long>) {
    return array.getValueAsInt(position);
  } else if constexpr (std::is_same_v<T, double>) {
    return array.getValueAsDouble(position);
  } else if constexpr (std::is_same_v<T, std::complex<double>>) {
    return array.getValueAsComplex(position);
  } else {
    static_assert(std::is_same_v<T, std::string>, "an element type that is measured");
    return array.getValueAsString(position);
  }
}

}  // namespace benchmarks
