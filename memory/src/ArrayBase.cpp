#include <quillon/memory/ArrayBase.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/InvalidCall.h>

#include <limits>
#include <stdexcept>
#include <utility>

#include "EntryName.h"
#include "Text.h"

namespace quillon::memory {
namespace {

using object_model::ElementType;
using object_model::Tuple;
using object_model::TupleX;

std::unique_ptr<TupleX> shapeOf(const std::vector<Axis>& axes) {
  auto shape = std::make_unique<TupleX>(axes.size());
  for (std::size_t k = 0; k < axes.size(); ++k) {
    (*shape)[k] = axes[k].size();
  }
  return shape;
}

// An extent of 0 makes the array empty however large the others are.
unsigned long countElements(const std::string& name, const Tuple& shape) {
  for (unsigned long k = 0; k < shape.size(); ++k) {
    if (shape[k] == 0) {
      return 0;
    }
  }
  unsigned long count = 1;
  for (unsigned long k = 0; k < shape.size(); ++k) {
    if (count > std::numeric_limits<unsigned long>::max() / shape[k]) {
      throw std::length_error("Array '" + name + "' of shape " + toText(shape) +
                              " has more elements than 64 bits can count");
    }
    count *= shape[k];
  }
  return count;
}

[[noreturn]] void rejectAccess(const ArrayBase& array, ElementType asked) {
  throw InvalidCall("Array '" + array.getName() + "' holds " + nameOf(array.getElementType()) +
                    " elements and cannot be read as " + nameOf(asked));
}

[[noreturn]] void rejectPosition(const ArrayBase& array, const Tuple& index) {
  throw std::out_of_range("Array '" + array.getName() + "': position " + toText(index) +
                          " is outside the shape " + toText(array.size()));
}

void requireAlong(const ArrayBase& array, const Axis& axis,
                  const object_model::Array& coordinates) {
  const Tuple& shape = coordinates.size();
  if (shape.size() != 1 || shape[0] != axis.size()) {
    throw std::invalid_argument("Axis '" + axis.getAxisName() + "' of array '" + array.getName() +
                                "' has " + std::to_string(axis.size()) +
                                " points and cannot take the coordinates '" +
                                coordinates.getName() + "' of shape " + toText(shape));
  }
}

}  // namespace

ArrayBase::ArrayBase(std::string name, ElementType elementType, std::vector<Axis> axes,
                     std::string description)
    : m_descriptor(std::move(name), elementType, std::move(axes), std::move(description)),
      m_shape(shapeOf(m_descriptor.axes())),
      m_numberOfElements(countElements(m_descriptor.getName(), *m_shape)) {}

ArrayBase::ArrayBase(ArrayBase&& other) noexcept
    : object_model::Array(),
      AttributeList(std::move(other)),
      m_descriptor(std::move(other.m_descriptor)),
      m_shape(std::move(other.m_shape)),
      m_numberOfElements(other.m_numberOfElements),
      m_unit(std::move(other.m_unit)),
      m_physicalUnit(std::move(other.m_physicalUnit)),
      m_coordinates(std::move(other.m_coordinates)) {}

const ArrayDescriptor* ArrayBase::getInformation() const { return &m_descriptor; }
const object_model::Data* ArrayBase::parent() const { return m_parent; }
object_model::Data* ArrayBase::parent() { return m_parent; }
void ArrayBase::setParent(object_model::Data* parent) { m_parent = parent; }

double ArrayBase::getValueAsDouble(const Tuple& /*index*/) const {
  rejectAccess(*this, ElementType::Double);
}

unsigned long ArrayBase::getValueAsUInt(const Tuple& /*index*/) const {
  rejectAccess(*this, ElementType::UInt);
}

long ArrayBase::getValueAsInt(const Tuple& /*index*/) const {
  rejectAccess(*this, ElementType::Int);
}

std::string ArrayBase::getValueAsString(const Tuple& /*index*/) const {
  rejectAccess(*this, ElementType::String);
}

const object_model::Data* ArrayBase::getValueAsDictionary(const Tuple& /*index*/) const {
  rejectAccess(*this, ElementType::Dictionary);
}

bool ArrayBase::getValueAsBoolean(const Tuple& /*index*/) const {
  rejectAccess(*this, ElementType::Boolean);
}

std::complex<double> ArrayBase::getValueAsComplex(const Tuple& /*index*/) const {
  rejectAccess(*this, ElementType::Complex);
}

const Tuple& ArrayBase::size() const { return *m_shape; }
std::string ArrayBase::getPhysicalUnit() const { return m_physicalUnit; }
std::string ArrayBase::getUnit() const { return m_unit; }
object_model::WritingInterface* ArrayBase::getWritingInterface() { return nullptr; }
const object_model::WritingInterface* ArrayBase::getWritingInterface() const { return nullptr; }
unsigned long ArrayBase::numberOfElements() const { return m_numberOfElements; }

unsigned long ArrayBase::offsetOf(const Tuple& index) const {
  return offsetOf(index.size() == 0 ? nullptr : &index[0], index.size());
}

unsigned long ArrayBase::offsetOf(const unsigned long* index, unsigned long count) const {
  const Tuple& shape = *m_shape;
  const unsigned long dimensions = shape.size();
  if (count != dimensions) {
    rejectPosition(*this, TupleX(index, count));
  }
  unsigned long offset = 0;
  for (unsigned long k = dimensions; k > 0;) {
    --k;
    const unsigned long extent = shape[k];
    const unsigned long coordinate = index[k];
    if (coordinate >= extent) {
      rejectPosition(*this, TupleX(index, count));
    }
    offset = offset * extent + coordinate;
  }
  return offset;
}

void ArrayBase::setName(std::string name) {
  requireFreeToRename(*this, "Array", name);
  m_descriptor.setName(std::move(name));
}

void ArrayBase::setDescription(std::string description) {
  m_descriptor.setDescription(std::move(description));
}

void ArrayBase::setUnit(const std::string& unit) {
  m_unit = unit;
  m_physicalUnit = unit;
}

void ArrayBase::setPhysicalUnit(std::string unit) { m_physicalUnit = std::move(unit); }

std::shared_ptr<const object_model::Array> ArrayBase::coordinates(unsigned long dimension) const {
  return dimension < m_coordinates.size() ? m_coordinates[dimension] : nullptr;
}

void ArrayBase::setCoordinates(unsigned long dimension,
                               std::shared_ptr<const object_model::Array> coordinates) {
  const Axis& axis = *m_descriptor.getAxisInfo(dimension);
  if (coordinates != nullptr) {
    requireAlong(*this, axis, *coordinates);
  }
  m_coordinates.resize(m_descriptor.axes().size());
  m_coordinates[dimension] = std::move(coordinates);
}

void ArrayBase::copyRemarksOf(const ArrayBase& other) {
  setDescription(other.getDescription());
  m_unit = other.m_unit;
  m_physicalUnit = other.m_physicalUnit;
  m_coordinates = other.m_coordinates;
  AttributeList::operator=(other);
}

}  // namespace quillon::memory
