#include <quillon/memory/DictionaryBase.h>

#include <utility>

#include "EntryName.h"

namespace quillon::memory {

using object_model::Data;

DictionaryBase::DictionaryBase(std::string name, std::string description)
    : m_descriptor(std::move(name), std::move(description)) {}

DictionaryBase::DictionaryBase(DictionaryBase&& other) noexcept
    : object_model::Dictionary(),
      AttributeList(static_cast<AttributeList&&>(other)),
      m_descriptor(std::move(other.m_descriptor)) {}

DictionaryBase& DictionaryBase::operator=(DictionaryBase&& other) noexcept {
  AttributeList::operator=(static_cast<AttributeList&&>(other));
  m_descriptor = std::move(other.m_descriptor);
  return *this;
}

const DictionaryDescriptor* DictionaryBase::getInformation() const { return &m_descriptor; }
const Data* DictionaryBase::parent() const { return m_parent; }
Data* DictionaryBase::parent() { return m_parent; }
void DictionaryBase::setParent(Data* parent) { m_parent = parent; }
bool DictionaryBase::isDynamicDictionary() const { return false; }
object_model::DynamicDictionary* DictionaryBase::asDynamicDictionary() { return nullptr; }
const object_model::DynamicDictionary* DictionaryBase::asDynamicDictionary() const {
  return nullptr;
}
void DictionaryBase::reservedDictionary0() const {}
void DictionaryBase::reservedDictionary1() const {}

void DictionaryBase::setName(std::string name) {
  requireFreeToRename(*this, "Dictionary", name);
  m_descriptor.setName(std::move(name));
}

void DictionaryBase::setDescription(std::string description) {
  m_descriptor.setDescription(std::move(description));
}

}  // namespace quillon::memory
