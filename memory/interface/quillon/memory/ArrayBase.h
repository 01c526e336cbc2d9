/// @file
/// What every concrete array needs besides its values.
#pragma once

#include <object_model/Array.h>
#include <object_model/TupleX.h>
#include <quillon/memory/AttributeList.h>
#include <quillon/memory/Descriptors.h>
#include <quillon/memory/Facets.h>

#include <array>
#include <complex>
#include <memory>
#include <string>
#include <vector>

namespace quillon::memory {

/// An array without values: descriptor, shape, units, container, attributes and coordinates. Derive
/// from it to write an array over a storage of your own, and override the one accessor that suits
/// its element type, or derive from `ValueArray` and say what the value at a position is.
///
/// Ownership: owns its descriptor, shape and attributes, shares its coordinates; knows its
/// container without owning it. Threads: const operations may run concurrently.
class ArrayBase : public object_model::Array, public AttributeList, public HasCoordinates {
 public:
  /// An array called `name`. Its shape is the sizes of `axes`, dimension 0 first.
  /// @throws std::length_error when the number of elements does not fit 64 bits.
  ArrayBase(std::string name, object_model::ElementType elementType, std::vector<Axis> axes,
            std::string description = {});

  /// The descriptor, which belongs to the array.
  const ArrayDescriptor* getInformation() const override;
  const object_model::Data* parent() const override;
  object_model::Data* parent() override;
  void setParent(object_model::Data* parent) override;

  /// Fails unless overridden, with a sentence that names the array, what it holds and what was
  /// asked for.
  /// @throws InvalidCall
  double getValueAsDouble(const object_model::Tuple& index) const override;
  /// @copydoc getValueAsDouble
  unsigned long getValueAsUInt(const object_model::Tuple& index) const override;
  /// @copydoc getValueAsDouble
  long getValueAsInt(const object_model::Tuple& index) const override;
  /// @copydoc getValueAsDouble
  std::string getValueAsString(const object_model::Tuple& index) const override;
  /// @copydoc getValueAsDouble
  const object_model::Data* getValueAsDictionary(const object_model::Tuple& index) const override;
  /// @copydoc getValueAsDouble
  bool getValueAsBoolean(const object_model::Tuple& index) const override;
  /// @copydoc getValueAsDouble
  std::complex<double> getValueAsComplex(const object_model::Tuple& index) const override;

  const object_model::Tuple& size() const override;
  std::string getPhysicalUnit() const override;
  std::string getUnit() const override;

  /// Returns null: arrays in memory are written through their own class.
  object_model::WritingInterface* getWritingInterface() override;
  /// Returns null: arrays in memory are written through their own class.
  const object_model::WritingInterface* getWritingInterface() const override;

  /// The number of elements: the product of the extents, 1 for an array without dimensions.
  unsigned long numberOfElements() const;

  /// Where the element at `index` stands when dimension 0 varies fastest.
  /// @throws std::out_of_range when the position has another number of indices than the array has
  ///   dimensions, or one of them is not below its extent. The sentence names the array, the
  ///   position and the shape.
  unsigned long offsetOf(const object_model::Tuple& index) const;

  /// The same for the `count` indices from `index` on.
  unsigned long offsetOf(const unsigned long* index, unsigned long count) const;

  /// Replaces the name.
  /// @throws std::invalid_argument when this is an entry of a dictionary, which finds it under its
  ///   name: see `Dictionary::rename`.
  void setName(std::string name);

  /// Replaces the description.
  void setDescription(std::string description);

  /// Sets both the unit that is shown and the physical unit.
  void setUnit(const std::string& unit);

  /// Sets the physical unit alone.
  void setPhysicalUnit(std::string unit);

  std::shared_ptr<const object_model::Array> coordinates(unsigned long dimension) const override;

  /// Says what the indices along `dimension` stand for: an array of one dimension of the same size,
  /// of numbers, texts or times. Null takes the coordinates away.
  /// @throws std::out_of_range when `dimension` is not below the number of dimensions,
  ///   std::invalid_argument when the coordinates have another shape; nothing is changed.
  void setCoordinates(unsigned long dimension,
                      std::shared_ptr<const object_model::Array> coordinates);

  /// Takes over copies of the other's description, units and attributes and, where both have the
  /// same shape, its coordinates, which are shared. Name and values stay.
  void copyRemarksOf(const ArrayBase& other);

 protected:
  /// Takes over everything but the container.
  ArrayBase(ArrayBase&& other) noexcept;

  /// Where the element at these indices, dimension 0 first, stands; see offsetOf().
  template <class... Index>
  unsigned long offsetAt(Index... index) const {
    const std::array<unsigned long, sizeof...(Index)> position = {
        static_cast<unsigned long>(index)...};
    return offsetOf(position.data(), position.size());
  }

  /// @throws std::invalid_argument unless the array has `count` elements.
  void requireCount(unsigned long count) const;

 private:
  ArrayDescriptor m_descriptor;
  std::unique_ptr<object_model::TupleX> m_shape;  // a TupleX cannot be moved
  unsigned long m_numberOfElements;
  std::string m_unit;
  std::string m_physicalUnit;
  std::vector<std::shared_ptr<const object_model::Array>> m_coordinates;  // empty for none at all
  object_model::Data* m_parent = nullptr;
};

}  // namespace quillon::memory
