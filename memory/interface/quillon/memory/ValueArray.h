/// @file
/// Arrays that say in one function what their values are.
#pragma once

#include <quillon/memory/ArrayBase.h>
#include <quillon/memory/ElementTypes.h>

#include <string>
#include <vector>

namespace quillon::memory {

/// An array with a function for its values. `T` is the type of one value: that of an element type
/// or one in which values are stored, such as `float`.
template <class T>
class ValueSource : public ArrayBase {
 public:
  /// The value at `index`, widened to the element type; for dictionaries a pointer to it.
  virtual ResultOf<T> valueAt(const object_model::Tuple& index) const = 0;

 protected:
  /// An array called `name`; see `ArrayBase`.
  ValueSource(std::string name, std::vector<Axis> axes, std::string description = {})
      : ArrayBase(std::move(name), ElementTraits<ElementOf<T>>::TYPE, std::move(axes),
                  std::move(description)) {}
  /// Takes over everything but the container.
  ValueSource(ValueSource&&) noexcept = default;
};

/// What an array over a storage of your own derives from: override `valueAt(index)`, and the
/// accessor that suits `T` gives what it returns, while all others refuse.
///
/// `T` is one of the element types `unsigned long`, `long`, `double`, `std::complex<double>`,
/// `std::string`, `bool` and `Dictionary`, or one of the stored types, which `StoredTraits` lists;
/// valueAt() returns the type that it is widened to, such as `double` for `float`.
///
/// Ownership, threads: as `ArrayBase`.
template <class T>
class ValueArray : public ElementTraits<ElementOf<T>>::template Accessor<ValueSource<T>> {
 protected:
  /// An array called `name`; see `ArrayBase`.
  ValueArray(std::string name, std::vector<Axis> axes, std::string description = {})
      : ElementTraits<ElementOf<T>>::template Accessor<ValueSource<T>>(
            std::move(name), std::move(axes), std::move(description)) {}
  /// Takes over everything but the container.
  ValueArray(ValueArray&&) noexcept = default;
};

}  // namespace quillon::memory
