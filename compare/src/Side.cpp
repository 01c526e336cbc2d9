#include "Side.h"

#include <object_model/Tuple.h>

namespace quillon::compare {
namespace {

using object_model::StoredType;

/// The stored type of what an array's accessor gives.
StoredType typeOfAccessor(object_model::ElementType type) {
  StoredType stored = StoredType::Float64;
  memory::visitElementType(type, [&](auto tag) {
    using Element = typename decltype(tag)::Type;
    if constexpr (memory::IS_STORED_TYPE<Element>) {
      stored = memory::StoredTraits<Element>::TYPE;
    }
  });
  return stored;
}

}  // namespace

Side::Side(const object_model::Array& array)
    : m_array(array),
      m_bulk(memory::bulkValuesOf(array)),
      m_storedType(m_bulk == nullptr ? typeOfAccessor(array.getElementType())
                                     : m_bulk->storedType()) {
  if (m_bulk == nullptr) {
    return;
  }
  const object_model::ValuesInPlace values = m_bulk->valuesInPlace();
  m_origin = static_cast<const char*>(values.first);
  if (m_origin != nullptr && values.strides != nullptr) {
    m_strides.assign(values.strides, values.strides + array.size().size());
  }
}

const unsigned long* Side::chunkExtents() const {
  return m_bulk == nullptr ? nullptr : m_bulk->chunkExtents();
}

void Side::load(const memory::Block& block) {
  if (!isInPlace()) {
    read(block);
    return;
  }
  m_first = m_origin;
  for (std::size_t k = 0; k < m_strides.size(); ++k) {
    m_first += static_cast<long>(block.start[k]) * m_strides[k];
  }
}

void Side::read(const memory::Block& block) {
  unsigned long step = memory::bytesOf(m_storedType);
  const unsigned long needed = block.count * step;
  if (needed > m_room) {
    m_buffer.reset();                  // before the next one takes its memory
    m_buffer.reset(new char[needed]);  // not make_unique, which would fill it with zeros
    m_room = needed;
  }
  memory::visitStoredType(m_storedType, [&](auto tag) {
    using Stored = typename decltype(tag)::Type;
    memory::copyValues(m_array, block, reinterpret_cast<Stored*>(m_buffer.get()));
  });
  m_first = m_buffer.get();
  m_strides.clear();
  for (const unsigned long extent : block.extent) {
    m_strides.push_back(static_cast<long>(step));
    step *= extent;
  }
}

}  // namespace quillon::compare
