#include "Sibling.h"

#include <quillon/memory/Axes.h>
#include <quillon/memory/ElementTypes.h>
#if QUILLON_PYTHON_HAS_NETCDF
#include <quillon/netcdf/Decoded.h>
#endif

#include <utility>

namespace quillon::python {
namespace {

using memory::ArrayBase;
using object_model::Array;
using object_model::Tuple;

std::vector<memory::Axis> copiedAxes(const Array& array) {
  std::vector<memory::Axis> axes;
  for (const memory::AxisFacts& axis : memory::axesOf(array)) {
    axes.emplace_back(axis.name, axis.size, axis.type);
  }
  return axes;
}

bool isDecodedArray(const Array& array) {
  if (const auto* const known = dynamic_cast<const SiblingInBulk*>(&array)) {
    return known->isDecoded();
  }
#if QUILLON_PYTHON_HAS_NETCDF
  return netcdf::isDecoded(array);
#else
  return false;
#endif
}

/// Points in time that know it themselves, such as those of a file.
class SiblingOfTimes final : public SiblingInBulk, public memory::HasTimes {
 public:
  SiblingOfTimes(const std::string& name, const ConstArrayPointer& original,
                 const std::shared_ptr<Gate>& gate)
      : SiblingInBulk(name, original, gate), m_calendar(times().calendar()) {}

  memory::Calendar calendar() const override { return m_calendar; }
  void readTimes(const unsigned long* start, const unsigned long* extent,
                 long* destination) const override {
    const Passage passage(gate());
    times().readTimes(start, extent, destination);
  }
  ArrayPointer copy(const std::string& name) const override {
    const Passage passage(gate());
    return std::make_shared<SiblingOfTimes>(name, original(), gate());
  }

 private:
  const memory::HasTimes& times() const {
    return dynamic_cast<const memory::HasTimes&>(*original());
  }

  memory::Calendar m_calendar;
};

bool hasTimes(const Array& array) {
  return dynamic_cast<const memory::HasTimes*>(&array) != nullptr;
}

}  // namespace

Sibling::Sibling(const std::string& name, ConstArrayPointer original, std::shared_ptr<Gate> gate)
    : ArrayBase(name, original->getElementType(), copiedAxes(*original)),
      m_original(std::move(original)),
      m_gate(std::move(gate)) {
  copyRemarksOf(*m_original);
}

std::string Sibling::getValueAsString(const Tuple& index) const {
  const Passage passage(m_gate);
  return m_original->getValueAsString(index);
}

const object_model::Data* Sibling::getValueAsDictionary(const Tuple& index) const {
  return m_original->getValueAsDictionary(index);
}

ArrayPointer Sibling::copy(const std::string& name) const {
  const Passage passage(gate());
  return std::make_shared<Sibling>(name, m_original, m_gate);
}

SiblingInBulk::SiblingInBulk(const std::string& name, ConstArrayPointer original,
                             std::shared_ptr<Gate> gate)
    : Sibling(name, std::move(original), std::move(gate)),
      m_bulk(*memory::bulkValuesOf(*this->original())),
      m_storedType(m_bulk.storedType()),
      m_dtype(spelledDtypeOf(*this->original())),
      m_isDecoded(isDecodedArray(*this->original())) {
  if (const unsigned long* const chunks = m_bulk.chunkExtents()) {
    m_chunks.assign(chunks, chunks + size().size());
  }
}

double SiblingInBulk::getValueAsDouble(const Tuple& index) const {
  const Passage passage(gate());
  return original()->getValueAsDouble(index);
}

unsigned long SiblingInBulk::getValueAsUInt(const Tuple& index) const {
  const Passage passage(gate());
  return original()->getValueAsUInt(index);
}

long SiblingInBulk::getValueAsInt(const Tuple& index) const {
  const Passage passage(gate());
  return original()->getValueAsInt(index);
}

bool SiblingInBulk::getValueAsBoolean(const Tuple& index) const {
  const Passage passage(gate());
  return original()->getValueAsBoolean(index);
}

std::complex<double> SiblingInBulk::getValueAsComplex(const Tuple& index) const {
  const Passage passage(gate());
  return original()->getValueAsComplex(index);
}

object_model::ValuesInPlace SiblingInBulk::valuesInPlace() const {
  return gate() == nullptr ? m_bulk.valuesInPlace() : object_model::ValuesInPlace();
}

void SiblingInBulk::readValues(const unsigned long* start, const unsigned long* extent,
                               void* destination) const {
  const Passage passage(gate());
  m_bulk.readValues(start, extent, destination);
}

bool SiblingInBulk::holdsSameBytes(const Array& other, const unsigned long* start,
                                   const unsigned long* extent) const {
  const auto* const known = dynamic_cast<const SiblingInBulk*>(&other);
  if (known == nullptr) {
    return false;
  }
  const Passage first(gate());
  const Passage second(known->gate());
  const auto* const bytes = dynamic_cast<const HasStoredBytes*>(original().get());
  return bytes != nullptr && bytes->holdsSameBytes(*known->original(), start, extent);
}

const unsigned long* SiblingInBulk::chunkExtents() const {
  return m_chunks.empty() ? nullptr : m_chunks.data();
}

ArrayPointer SiblingInBulk::copy(const std::string& name) const {
  const Passage passage(gate());
  return std::make_shared<SiblingInBulk>(name, original(), gate());
}

ArrayPointer siblingOf(const ConstArrayPointer& original, const std::string& name,
                       const std::shared_ptr<Gate>& gate) {
  if (const auto* const known = dynamic_cast<const Sibling*>(original.get())) {
    ArrayPointer sibling = known->copy(name);
    sibling->copyRemarksOf(*original);  // which may have changed since
    return sibling;
  }
  if (memory::bulkValuesOf(*original) == nullptr) {
    return std::make_shared<Sibling>(name, original, gate);
  }
  if (hasTimes(*original)) {
    return std::make_shared<SiblingOfTimes>(name, original, gate);
  }
  return std::make_shared<SiblingInBulk>(name, original, gate);
}

ArrayPointer numbersOf(const ConstArrayPointer& original) {
  const std::string name = original->getName();
  ArrayPointer numbers;
  if (memory::bulkValuesOf(*original) == nullptr) {
    numbers = std::make_shared<Sibling>(name, original, nullptr);
  } else {
    numbers = std::make_shared<SiblingInBulk>(name, original, nullptr);
  }
  for (unsigned long k = 0; k < original->size().size(); ++k) {
    const auto coordinates = std::dynamic_pointer_cast<const ArrayBase>(original->coordinates(k));
    if (coordinates != nullptr && hasTimes(*coordinates)) {
      numbers->setCoordinates(k, numbersOf(coordinates));
    }
  }
  return numbers;
}

}  // namespace quillon::python
