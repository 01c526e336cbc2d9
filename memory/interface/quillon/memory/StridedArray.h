/// @file
/// Arrays over any buffer.
#pragma once

#include <quillon/memory/InPlaceValues.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/memory/ValueArray.h>

#include <complex>
#include <memory>
#include <string>
#include <vector>

namespace quillon::memory {

/// An array whose values lie in somebody's memory at regular steps: a matrix in either order, a
/// part or every other value of a larger block, a block read backwards, one value that stands for
/// many.
///
/// `T` is one of the types in which numbers and booleans are stored, see `StoredTraits`; the
/// accessor of the element type that it belongs to gives the values, widened.
///
/// Ownership: shares the owner of the memory, if it is given one; without, the memory must outlive
/// the array. Values are read and never written. Errors: as `ArrayBase`; a position outside the
/// shape raises `std::out_of_range`. Threads: const operations may run concurrently.
template <class T>
class StridedArray final : public ValueArray<T>, public InPlaceValues<T> {
  static_assert(IS_STORED_TYPE<T>,
                "Values that lie at steps are numbers or booleans: signed char, short, int, long, "
                "unsigned char, unsigned short, unsigned int, unsigned long, float, double, "
                "std::complex<float>, std::complex<double> or bool.");

 public:
  /// An array called `name` with one step for each axis.
  /// @param name, axes as for `ArrayBase`.
  /// @param first the value whose indices are all 0; for negative steps it is not the lowest in
  ///   memory. It may be null when an axis has no points.
  /// @param strides how many bytes one index further the next value lies, dimension 0 first; zero
  ///   and negative steps are allowed.
  /// @param owner what keeps the memory alive.
  /// @throws std::invalid_argument for another number of steps than axes, for a null `first`, and
  ///   for values that would not be aligned for their type.
  StridedArray(std::string name, std::vector<Axis> axes, const T* first, std::vector<long> strides,
               std::shared_ptr<const void> owner = nullptr);

  /// Takes over everything but the container. `other` may then only be destroyed.
  StridedArray(StridedArray&& other) noexcept;
  ~StridedArray() override;

  /// The element at `index`. Borrowed from the memory.
  /// @throws std::out_of_range for a position outside the shape.
  const T& value(const object_model::Tuple& index) const;

  /// The element at the position of these indices, dimension 0 first: `value(2, 0)`.
  /// @throws std::out_of_range for a position outside the shape.
  template <class... Index, class = std::enable_if_t<(std::is_integral_v<Index> && ...)>>
  const T& value(Index... index) const {
    const std::array<unsigned long, sizeof...(Index)> position = {
        static_cast<unsigned long>(index)...};
    return valueOf(position.data(), position.size());
  }

  /// The element at `index`, widened to the element type.
  /// @throws std::out_of_range for a position outside the shape.
  ResultOf<T> valueAt(const object_model::Tuple& index) const override;

  /// An array that owns a copy of the values, and has the same description, units, attributes and
  /// coordinates.
  TypedArray<T> clone(std::string name) const;

  /// A copy of the same name.
  TypedArray<T> clone() const { return clone(this->getName()); }

 private:
  const T& valueOf(const unsigned long* index, unsigned long count) const;
  void requirePlace(const T* first, const std::vector<long>& strides) const;

  std::shared_ptr<const void> m_owner;
};

extern template class StridedArray<signed char>;
extern template class StridedArray<short>;
extern template class StridedArray<int>;
extern template class StridedArray<long>;
extern template class StridedArray<unsigned char>;
extern template class StridedArray<unsigned short>;
extern template class StridedArray<unsigned int>;
extern template class StridedArray<unsigned long>;
extern template class StridedArray<float>;
extern template class StridedArray<double>;
extern template class StridedArray<std::complex<float>>;
extern template class StridedArray<std::complex<double>>;
extern template class StridedArray<bool>;

}  // namespace quillon::memory
