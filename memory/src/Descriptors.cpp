#include <quillon/memory/Descriptors.h>

#include <stdexcept>
#include <utility>

namespace quillon::memory {

ArrayDescriptor::ArrayDescriptor(std::string name, object_model::ElementType elementType,
                                 std::vector<Axis> axes, std::string description)
    : m_name(std::move(name)),
      m_description(std::move(description)),
      m_elementType(elementType),
      m_axes(std::move(axes)) {}

const std::string& ArrayDescriptor::getName() const { return m_name; }
const std::string& ArrayDescriptor::getDescription() const { return m_description; }
object_model::ElementType ArrayDescriptor::getElementType() const { return m_elementType; }

const Axis* ArrayDescriptor::getAxisInfo(unsigned long dimension) const {
  if (dimension >= m_axes.size()) {
    throw std::out_of_range("Array '" + m_name + "' has " + std::to_string(m_axes.size()) +
                            " axes; there is none for dimension " + std::to_string(dimension));
  }
  return &m_axes[dimension];
}

const std::vector<Axis>& ArrayDescriptor::axes() const { return m_axes; }

void ArrayDescriptor::setName(std::string name) { m_name = std::move(name); }

void ArrayDescriptor::setDescription(std::string description) {
  m_description = std::move(description);
}

void ArrayDescriptor::reservedDataInfo0() const {}
void ArrayDescriptor::reservedArrayInfo0() const {}
void ArrayDescriptor::reservedArrayInfo1() const {}
void ArrayDescriptor::reservedArrayInfo2() const {}
void ArrayDescriptor::reservedArrayInfo3() const {}

DictionaryDescriptor::DictionaryDescriptor(std::string name, std::string description)
    : m_name(std::move(name)), m_description(std::move(description)) {}

const std::string& DictionaryDescriptor::getName() const { return m_name; }
const std::string& DictionaryDescriptor::getDescription() const { return m_description; }

void DictionaryDescriptor::setName(std::string name) { m_name = std::move(name); }

void DictionaryDescriptor::setDescription(std::string description) {
  m_description = std::move(description);
}

void DictionaryDescriptor::reservedDataInfo0() const {}
void DictionaryDescriptor::reservedDictionaryInfo0() const {}
void DictionaryDescriptor::reservedDictionaryInfo1() const {}
void DictionaryDescriptor::reservedDictionaryInfo2() const {}
void DictionaryDescriptor::reservedDictionaryInfo3() const {}
void DictionaryDescriptor::reservedDictionaryInfo4() const {}

}  // namespace quillon::memory
