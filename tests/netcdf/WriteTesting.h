#pragma once

#include <object_model/BulkValues.h>
#include <object_model/Dictionary.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/netcdf/Write.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "TestFiles.h"

namespace quillon::netcdf {

/// How a command of the shell ended and what it printed, errors included.
struct Printed {
  int status = 0;
  std::string text;
};

Printed printedBy(const std::string& command);

/// What `ncdump` prints of a file that is to be called a.nc. `options` such as "-h".
std::string dumpOf(const std::string& path, const std::string& options = {});

/// A dictionary of the arrays.
template <class... Entry>
memory::Dictionary dictionaryOf(Entry&&... entries) {
  memory::Dictionary dictionary("root");
  (dictionary.add(std::forward<Entry>(entries)), ...);
  return dictionary;
}

/// An array of one dimension along `axis`.
template <class T>
memory::TypedArray<T> row(const std::string& name, const std::string& axis, std::vector<T> values) {
  const unsigned long size = values.size();
  return {name, {memory::Axis(axis, size)}, std::move(values)};
}

/// An array of times whose every operation that a writer may ask for calls a function first.
class AskedArray final : public memory::ValueArray<long>,
                         public object_model::BulkValues,
                         public memory::HasTimes {
 public:
  explicit AskedArray(std::function<void()> onAsked)
      : ValueArray("a", {memory::Axis("a", 3)}), m_onAsked(std::move(onAsked)) {
    setUnit("days since 2000-01-01");
  }
  long valueAt(const object_model::Tuple& /*index*/) const override { return 7; }
  const memory::ArrayDescriptor* getInformation() const override {
    m_onAsked();
    return ValueArray::getInformation();
  }
  const object_model::Tuple& size() const override {
    m_onAsked();
    return ValueArray::size();
  }
  std::string getUnit() const override {
    m_onAsked();
    return ValueArray::getUnit();
  }
  std::vector<memory::Attribute> attributes() const override {
    m_onAsked();
    return {{"remark", "text"}};
  }
  std::shared_ptr<const object_model::Array> coordinates(
      unsigned long /*dimension*/) const override {
    m_onAsked();
    return nullptr;
  }
  memory::Calendar calendar() const override {
    m_onAsked();
    return memory::Calendar::Julian;
  }
  void readTimes(const unsigned long* /*start*/, const unsigned long* extent,
                 long* destination) const override {
    m_onAsked();
    std::fill_n(destination, extent[0], 0L);
  }
  object_model::StoredType storedType() const override {
    m_onAsked();
    return object_model::StoredType::Int64;
  }
  void readValues(const unsigned long* /*start*/, const unsigned long* extent,
                  void* destination) const override {
    m_onAsked();
    std::fill_n(static_cast<long*>(destination), extent[0], 7L);
  }

 private:
  std::function<void()> m_onAsked;
};

/// A dictionary of such an array that does the same.
class AskedDictionary final : public memory::DictionaryBase {
 public:
  explicit AskedDictionary(const std::function<void()>& onAsked)
      : DictionaryBase("d"), m_array(onAsked), m_onAsked(onAsked) {}
  unsigned long getNumOfData() const override {
    m_onAsked();
    return 1;
  }
  std::string getDataName(int /*index*/) const override {
    m_onAsked();
    return "a";
  }
  using object_model::Dictionary::data;
  object_model::Data* data(const std::string& /*name*/) override { return &m_array; }
  const object_model::Data* data(const std::string& /*name*/) const override {
    m_onAsked();
    return &m_array;
  }
  std::vector<memory::Attribute> attributes() const override {
    m_onAsked();
    return {};
  }

 private:
  AskedArray m_array;
  std::function<void()> m_onAsked;
};

/// A test that writes a file in a directory of its own.
class WriteTest : public testing::Test {
 protected:
  void write(const object_model::Dictionary& dictionary, const WriteOptions& options = {}) const {
    netcdf::write(dictionary, m_path, options);
  }

  std::string dump(const object_model::Dictionary& dictionary) const {
    write(dictionary);
    return dumpOf(m_path);
  }

  /// Why it cannot be written, without the name of the file; "" where it can. Nothing is left then.
  std::string refusalOf(const object_model::Dictionary& dictionary) const {
    const std::string error = errorOf([&] { write(dictionary); });
    const std::string prefix = "Cannot write '" + m_path + "': ";
    EXPECT_EQ(m_scratch.entries().empty(), !error.empty());
    EXPECT_EQ(error.substr(0, prefix.size()), error.empty() ? "" : prefix);
    return error.empty() ? error : error.substr(prefix.size());
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
};

}  // namespace quillon::netcdf
