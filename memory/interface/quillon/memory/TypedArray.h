/// @file
/// Arrays in memory of all element types.
#pragma once

#include <quillon/memory/Dictionary.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/InPlaceValues.h>
#include <quillon/memory/ValueArray.h>

#include <complex>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace quillon::memory {

/// What an array of texts or dictionaries has instead of bulk values: nothing.
class NoBulkValues {};

/// `InPlaceValues<T>` for a stored type, else nothing.
template <class T>
using ValuesOf = typename std::conditional_t<IS_STORED_TYPE<T>, TypeTag<InPlaceValues<T>>,
                                             TypeTag<NoBulkValues>>::Type;

/// An array whose elements stand in memory one after the other, dimension 0 varying fastest.
///
/// It owns its values or views a buffer of the caller's, which must then outlive it. `T` is one of
/// `unsigned long`, `long`, `double`, `std::complex<double>`, `std::string`, `bool` and
/// `quillon::memory::Dictionary`, or a smaller number that is stored as such: `signed char`,
/// `short`, `int`, `unsigned char`, `unsigned short`, `unsigned int`, `float`,
/// `std::complex<float>`. The array's `ElementType` follows from it, and the accessor for that type
/// alone yields values, widened. An array that owns dictionaries is their parent.
///
/// Errors: as `ArrayBase`; a position outside the shape raises `std::out_of_range`.
/// Threads: const operations may run concurrently.
template <class T>
class TypedArray final : public ValueArray<T>, public ValuesOf<T> {
 public:
  using ArrayBase::getInformation;
  using ArrayBase::getName;
  using ArrayBase::numberOfElements;

  /// An array that owns `values`, as many as the sizes of `axes` multiply to.
  /// @throws std::invalid_argument when it is another number.
  TypedArray(std::string name, std::vector<Axis> axes, std::vector<T> values);

  /// An array that views the `count` values from `values` on. It reads them and never writes them.
  /// @throws std::invalid_argument when `count` is not what the sizes of `axes` multiply to, or
  ///   `values` is null and `count` is not 0.
  static TypedArray view(std::string name, std::vector<Axis> axes, const T* values,
                         unsigned long count);

  /// Takes over the values and the descriptor, not the container: the new array stands in none.
  /// `other` may then only be destroyed.
  TypedArray(TypedArray&& other) noexcept;
  ~TypedArray() override;

  /// The element at `index`. Borrowed; stays valid as long as the array, or the viewed buffer.
  /// @throws std::out_of_range for a position outside the shape.
  const T& value(const object_model::Tuple& index) const;

  /// The element at the position of these indices, dimension 0 first: `value(2, 0)`.
  /// @throws std::out_of_range for a position outside the shape.
  template <class... Index, class = std::enable_if_t<(std::is_integral_v<Index> && ...)>>
  const T& value(Index... index) const {
    return m_values[this->offsetAt(index...)];
  }

  /// Replaces the element at `index`.
  /// @throws InvalidCall when the array views its values.
  /// @throws std::out_of_range for a position outside the shape.
  void setValue(const object_model::Tuple& index, T value);

  /// The element at `index`, widened to the element type; for dictionaries a pointer to it.
  /// @throws std::out_of_range for a position outside the shape.
  ResultOf<T> valueAt(const object_model::Tuple& index) const override;

  /// The values, in storage order. Borrowed; they stay as long as the array, or the viewed buffer.
  const T* data() const { return m_values; }

  /// The same, for writing. An array that is only read is better asked as a const one.
  /// @throws InvalidCall when the array views its values.
  T* data();

  /// The values in storage order, for loops: `for (double value : array)`.
  const T* begin() const { return m_values; }
  /// Behind the last of the values.
  const T* end() const { return m_values + numberOfElements(); }

  /// A copy with values of its own, and with description, units and attributes. Coordinates, which
  /// nobody changes, are shared. It stands in no container. There is none of arrays of
  /// dictionaries, as not every entry can be copied.
  template <class U = T, class = std::enable_if_t<!std::is_same_v<U, Dictionary>>>
  TypedArray clone(std::string name) const {
    TypedArray copy(std::move(name), getInformation()->axes(), std::vector<T>(begin(), end()));
    copy.copyRemarksOf(*this);
    return copy;
  }

  /// A copy of the same name.
  template <class U = T, class = std::enable_if_t<!std::is_same_v<U, Dictionary>>>
  TypedArray clone() const {
    return clone(getName());
  }

 private:
  // std::vector<bool> packs its elements and so cannot stand behind a `const bool*`.
  using Owned =
      std::conditional_t<std::is_same_v<T, bool>, std::unique_ptr<bool[]>, std::vector<T>>;

  TypedArray(std::string name, std::vector<Axis> axes, const T* values, unsigned long count);

  void adoptElements();
  void placeValues();

  Owned m_owned;                // empty for a view
  T* m_writable = nullptr;      // the owned values; null for a view
  const T* m_values = nullptr;  // the owned or viewed values
};

using UIntArray = TypedArray<unsigned long>;            ///< elements are `ElementType::UInt`
using IntArray = TypedArray<long>;                      ///< elements are `ElementType::Int`
using DoubleArray = TypedArray<double>;                 ///< elements are `ElementType::Double`
using ComplexArray = TypedArray<std::complex<double>>;  ///< elements are `ElementType::Complex`
using StringArray = TypedArray<std::string>;            ///< elements are `ElementType::String`
using BooleanArray = TypedArray<bool>;                  ///< elements are `ElementType::Boolean`
using DictionaryArray = TypedArray<Dictionary>;         ///< elements are `ElementType::Dictionary`

extern template class TypedArray<signed char>;
extern template class TypedArray<short>;
extern template class TypedArray<int>;
extern template class TypedArray<long>;
extern template class TypedArray<unsigned char>;
extern template class TypedArray<unsigned short>;
extern template class TypedArray<unsigned int>;
extern template class TypedArray<unsigned long>;
extern template class TypedArray<float>;
extern template class TypedArray<double>;
extern template class TypedArray<std::complex<float>>;
extern template class TypedArray<std::complex<double>>;
extern template class TypedArray<std::string>;
extern template class TypedArray<bool>;
extern template class TypedArray<Dictionary>;

}  // namespace quillon::memory
