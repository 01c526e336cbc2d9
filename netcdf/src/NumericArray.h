#pragma once

#include <object_model/BulkValues.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Facets.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Decoding.h"
#include "FileArray.h"
#include "Window.h"

namespace quillon::netcdf {

/// The numbers of a variable in the type `Value`, that in which they are stored or, with a decoder,
/// the one that it makes of them: the window holds them as such, and each is widened when it is
/// asked for.
template <class Value>
class Numbers : public FileArray, public object_model::BulkValues, public memory::HasStoredBytes {
 public:
  Numbers(Encoding encoding, Variable variable, Decode<Value> decode, bool isInPlace,
          const std::string& name, std::vector<memory::Axis> axes, const std::string& description)
      : FileArray(memory::ElementTraits<memory::ElementOf<Value>>::TYPE, std::move(variable), name,
                  std::move(axes), description),
        m_encoding(std::move(encoding)),
        m_decode(std::move(decode)),
        m_isInPlace(isInPlace),
        m_blocks(m_variable.blocks()),
        m_window(m_variable.windows(0, sizeof(Value))) {}

  memory::ResultOf<Value> valueAt(const object_model::Tuple& index) const {
    return m_window.at(
        offsetOf(index),
        [this](const memory::Block& block, std::vector<Value>& values) {
          m_variable.makeRoom(values, block.count);
          return read(block.start.data(), block.extent.data(), values.data());
        },
        [this](unsigned long bytes) { m_variable.reportRead(bytes); });
  }

  object_model::StoredType storedType() const override { return memory::StoredTraits<Value>::TYPE; }

  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    m_variable.reportRead(read(start, extent, static_cast<Value*>(destination)));
  }

  bool isDecoded() const override { return !m_isInPlace; }

  const unsigned long* chunkExtents() const override {
    return m_blocks.empty() ? nullptr : m_blocks.data();
  }

  bool holdsSameBytes(const object_model::Array& other, const unsigned long* start,
                      const unsigned long* extent) const override {
    const auto* const second = dynamic_cast<const Numbers*>(&other);
    return second != nullptr && decodeAlike(m_encoding, second->m_encoding) &&
           m_variable.holdsSameBytes(second->m_variable, start, extent);
  }

 private:
  /// @return how many bytes the values take in the file.
  unsigned long read(const unsigned long* start, const unsigned long* extent, Value* values) const {
    const unsigned long count = m_variable.countOf(extent);
    const unsigned long bytes = count * m_variable.valueBytes;
    if (m_isInPlace) {
      m_variable.read(start, extent, values);
      if (m_decode) {
        m_decode(values, count, values);
      }
    } else {
      std::vector<char> stored;
      m_variable.makeRoom(stored, bytes);
      m_variable.read(start, extent, stored.data());
      m_decode(stored.data(), count, values);
    }
    return bytes;
  }

  Encoding m_encoding;
  Decode<Value> m_decode;
  bool m_isInPlace;  // whether stored values are of this type
  std::vector<unsigned long> m_blocks;
  mutable Window<Value> m_window;
};

/// The numbers as an array: the accessor of their element type gives them.
template <class Value>
using NumericArray =
    typename memory::ElementTraits<memory::ElementOf<Value>>::template Accessor<Numbers<Value>>;

/// An array over a variable of numbers as `encoding` says, of times where these are any. Null when
/// there is no such array, since the variable's type is no number.
std::unique_ptr<memory::ArrayBase> makeNumericArray(const Encoding& encoding, Variable variable,
                                                    const std::string& name,
                                                    std::vector<memory::Axis> axes,
                                                    const std::string& description);

}  // namespace quillon::netcdf
