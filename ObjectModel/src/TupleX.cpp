#include <object_model/TupleX.h>

#include <cstring>

namespace object_model {

TupleX::TupleX(unsigned long count)
    : m_storage(std::make_unique<std::vector<unsigned long>>(count)) {
  m_size = count;
  m_data = count == 0 ? nullptr : m_storage->data();
}

TupleX::TupleX(const unsigned long* values, unsigned long count) : TupleX(count) {
  if (count > 0) {
    std::memcpy(m_data, values, count * sizeof(unsigned long));
  }
}

TupleX::TupleX(const std::initializer_list<unsigned long>& list)
    : TupleX(list.begin(), list.size()) {}

TupleX::TupleX(const TupleX& other) : TupleX(other.m_data, other.m_size) {}

TupleX::~TupleX() = default;

TupleX& TupleX::operator=(const TupleX& other) { return *this = static_cast<const Tuple&>(other); }

TupleX& TupleX::operator=(const Tuple& other) {
  if (&other == this) {
    return *this;
  }
  const unsigned long count = other.size();
  if (count == 0) {
    // The storage stays as it is on purpose: a later resize() finds the old values again.
    m_size = 0;
    m_data = nullptr;
    return *this;
  }
  const unsigned long* source = &other[0];
  // A view of this tuple's own values is never longer than the storage. So growing first cannot
  // pull the values from under it, and cutting last cannot take them away before they have moved.
  if (count > m_storage->size()) {
    m_storage->resize(count);
  }
  std::memmove(m_storage->data(), source, count * sizeof(unsigned long));
  m_storage->resize(count);
  m_size = count;
  m_data = m_storage->data();
  return *this;
}

void TupleX::resize(unsigned long count) {
  m_storage->resize(count);
  m_size = count;
  m_data = m_storage->data();
}

}  // namespace object_model
