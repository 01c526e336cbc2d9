#pragma once

#include <quillon/arrow/Owned.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace quillon::arrow {

/// The bytes of numbers, as a buffer has them.
template <class T>
std::string bytesOf(std::initializer_list<T> numbers) {
  return {reinterpret_cast<const char*>(numbers.begin()), numbers.size() * sizeof(T)};
}

/// A column of one batch, built by hand. A buffer without bytes has no address.
struct HandMadeColumn {
  std::string name;
  std::string format;
  int64_t length = 0;
  std::vector<std::string> buffers = {};
  int64_t nulls = 0;
  int64_t offset = 0;
  bool hasDictionary = false;
};

/// A stream of one batch, as another producer makes it. It counts what is released, and fails where
/// it is asked to.
class HandMadeStream {
 public:
  explicit HandMadeStream(std::vector<HandMadeColumn> columns, int64_t rows, int64_t batches = 1)
      : m_columns(std::move(columns)), m_left(batches) {
    m_batch = {};
    m_batch.length = rows;
    m_batch.n_buffers = 1;
    m_batch.buffers = &m_validity;
    m_batch.release = &releaseArray;
    m_schema.format = "+s";
    m_schema.release = &releaseSchema;
    m_fields.resize(m_columns.size());
    m_arrays.resize(m_columns.size());
    m_addresses.resize(m_columns.size());
    m_dictionary.format = "u";
    for (std::size_t k = 0; k < m_columns.size(); ++k) {
      add(k);
    }
    m_batch.n_children = m_schema.n_children = static_cast<int64_t>(m_columns.size());
    m_batch.children = m_arrayPointers.data();
    m_schema.children = m_fieldPointers.data();
    m_batch.private_data = m_schema.private_data = this;
  }
  HandMadeStream(const HandMadeStream&) = delete;
  HandMadeStream& operator=(const HandMadeStream&) = delete;

  ArrowArrayStream* get() {
    m_stream = {&getSchema, &getNext, &getLastError, &releaseStream, this};
    return &m_stream;
  }

  ArrowArray& batch() { return m_batch; }
  ArrowSchema& schema() { return m_schema; }
  const void*& validity() { return m_validity; }
  int batchesReleased() const { return m_batchesReleased; }
  int streamsReleased() const { return m_streamsReleased; }

  int schemaStatus = 0;
  int endStatus = 0;
  const char* words = nullptr;

 private:
  static HandMadeStream& of(void* data) { return *static_cast<HandMadeStream*>(data); }

  void add(std::size_t k) {
    const HandMadeColumn& column = m_columns[k];
    m_fields[k].name = column.name.c_str();
    m_fields[k].format = column.format.c_str();
    m_fields[k].dictionary = column.hasDictionary ? &m_dictionary : nullptr;
    for (const std::string& buffer : column.buffers) {
      m_addresses[k].push_back(buffer.empty() ? nullptr : buffer.data());
    }
    m_arrays[k].length = column.length;
    m_arrays[k].null_count = column.nulls;
    m_arrays[k].offset = column.offset;
    m_arrays[k].n_buffers = static_cast<int64_t>(m_addresses[k].size());
    m_arrays[k].buffers = m_addresses[k].data();
    m_fieldPointers.push_back(&m_fields[k]);
    m_arrayPointers.push_back(&m_arrays[k]);
  }

  static void releaseSchema(ArrowSchema* schema) { schema->release = nullptr; }
  static void releaseArray(ArrowArray* array) {
    ++of(array->private_data).m_batchesReleased;
    array->release = nullptr;
  }
  static void releaseStream(ArrowArrayStream* stream) {
    ++of(stream->private_data).m_streamsReleased;
    stream->release = nullptr;
  }
  static int getSchema(ArrowArrayStream* stream, ArrowSchema* out) {
    *out = of(stream->private_data).m_schema;
    return of(stream->private_data).schemaStatus;
  }
  static int getNext(ArrowArrayStream* stream, ArrowArray* out) {
    HandMadeStream& self = of(stream->private_data);
    *out = {};
    if (self.m_left == 0) {
      return self.endStatus;
    }
    --self.m_left;
    *out = self.m_batch;
    return 0;
  }
  static const char* getLastError(ArrowArrayStream* stream) {
    return of(stream->private_data).words;
  }

  std::vector<HandMadeColumn> m_columns;
  int64_t m_left;
  ArrowSchema m_schema = {};
  ArrowSchema m_dictionary = {};
  ArrowArray m_batch = {};
  ArrowArrayStream m_stream = {};
  const void* m_validity = nullptr;
  std::vector<ArrowSchema> m_fields;
  std::vector<ArrowArray> m_arrays;
  std::vector<ArrowSchema*> m_fieldPointers;
  std::vector<ArrowArray*> m_arrayPointers;
  std::vector<std::vector<const void*>> m_addresses;
  int m_batchesReleased = 0;
  int m_streamsReleased = 0;
};

}  // namespace quillon::arrow
