#pragma once

#include <object_model/Dictionary.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/netcdf/Write.h>

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
