#pragma once

#include <object_model/BulkValues.h>
#include <quillon/memory/ArrayBase.h>
#include <quillon/memory/Facets.h>

#include <memory>
#include <string>

#include "Outline.h"

namespace quillon::python {

using ArrayPointer = std::shared_ptr<memory::ArrayBase>;
using ConstArrayPointer = std::shared_ptr<const memory::ArrayBase>;

/// What must be open while values are read.
class Gate {
 public:
  Gate() = default;
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;
  virtual ~Gate() = default;

  /// @throws where nothing can be read any more.
  virtual void enter() = 0;
  virtual void leave() noexcept = 0;
};

/// Stands in the gate, if there is one.
class Passage {
 public:
  explicit Passage(const std::shared_ptr<Gate>& gate) : m_gate(gate.get()) {
    if (m_gate != nullptr) {
      m_gate->enter();
    }
  }
  ~Passage() {
    if (m_gate != nullptr) {
      m_gate->leave();
    }
  }
  Passage(const Passage&) = delete;
  Passage& operator=(const Passage&) = delete;

 private:
  Gate* m_gate;
};

/// An array with the outline of another one, and with its values, which are read from it: an entry
/// of its own for each dictionary, as an entry knows one container. This class is for texts and
/// dictionaries.
class Sibling : public memory::ArrayBase {
 public:
  /// @param original shared.
  /// @param gate what each read passes; none where it is null. A closed gate means that the
  ///   original is not there any more.
  Sibling(const std::string& name, ConstArrayPointer original, std::shared_ptr<Gate> gate);

  std::string getValueAsString(const object_model::Tuple& index) const override;
  const object_model::Data* getValueAsDictionary(const object_model::Tuple& index) const override;

  /// Another one of the same original. @throws what the gate throws.
  virtual ArrayPointer copy(const std::string& name) const;

 protected:
  const ConstArrayPointer& original() const { return m_original; }
  const std::shared_ptr<Gate>& gate() const { return m_gate; }

 private:
  ConstArrayPointer m_original;
  std::shared_ptr<Gate> m_gate;
};

/// The same of numbers and truth values, in bulk.
class SiblingInBulk : public Sibling,
                      public object_model::BulkValues,
                      public memory::HasStoredBytes,
                      public HasDtype {
 public:
  /// `original` must be `BulkValues`.
  SiblingInBulk(const std::string& name, ConstArrayPointer original, std::shared_ptr<Gate> gate);

  double getValueAsDouble(const object_model::Tuple& index) const override;
  unsigned long getValueAsUInt(const object_model::Tuple& index) const override;
  long getValueAsInt(const object_model::Tuple& index) const override;
  bool getValueAsBoolean(const object_model::Tuple& index) const override;
  std::complex<double> getValueAsComplex(const object_model::Tuple& index) const override;

  object_model::StoredType storedType() const override { return m_storedType; }
  /// Nothing behind a gate, which may close.
  object_model::ValuesInPlace valuesInPlace() const override;
  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override;
  const unsigned long* chunkExtents() const override;
  /// As the originals, where both arrays are of this class and theirs tell.
  bool holdsSameBytes(const object_model::Array& other, const unsigned long* start,
                      const unsigned long* extent) const override;
  std::string dtype() const override { return m_dtype; }
  /// As `netcdf::isDecoded` of the original.
  bool isDecoded() const { return m_isDecoded; }
  ArrayPointer copy(const std::string& name) const override;

 private:
  const object_model::BulkValues& m_bulk;
  // What is known of the original, which is gone where the gate is closed.
  object_model::StoredType m_storedType;
  std::vector<unsigned long> m_chunks;
  std::string m_dtype;
  bool m_isDecoded;
};

/// An array of the name `name` that shares the values of `original`.
ArrayPointer siblingOf(const ConstArrayPointer& original, const std::string& name,
                       const std::shared_ptr<Gate>& gate = nullptr);

/// The same without what makes times of its numbers, and of those of its coordinates.
ArrayPointer numbersOf(const ConstArrayPointer& original);

}  // namespace quillon::python
