#include <object_model/InvalidCall.h>
#include <object_model/Namespace.h>

#include <iterator>

namespace object_model {

Namespace::Namespace()
    : m_infos(std::make_unique<std::map<std::string, const DictionaryInfo*>>()) {}

Namespace::~Namespace() = default;

Namespace& Namespace::instance() {
  // Debuggers and profiles know the object by this name.
  // NOLINTNEXTLINE(readability-identifier-naming)
  static Namespace m_namespace;
  return m_namespace;
}

unsigned long Namespace::getNumOfObject() const { return m_infos->size(); }

std::string Namespace::getObjectName(unsigned long index) const {
  return std::next(m_infos->begin(), static_cast<std::ptrdiff_t>(index))->first;
}

const DictionaryInfo* Namespace::getInfo(unsigned long index) const {
  return std::next(m_infos->begin(), static_cast<std::ptrdiff_t>(index))->second;
}

const DictionaryInfo* Namespace::getInfo(const std::string& name) {
  const auto found = m_infos->find(name);
  if (found == m_infos->end()) {
    throw InvalidCall("Invalid object name (" + name + ").");
  }
  return found->second;
}

void Namespace::registerObject(const std::string& name, const DictionaryInfo* info) {
  (*m_infos)[name] = info;
}

const DictionaryInfo* Namespace::getInfoByName(const std::string& name) const {
  return (*m_infos)[name];  // registers an unknown name on purpose
}

}  // namespace object_model
