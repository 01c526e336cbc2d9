#include "Arrow.h"

#include <object_model/Exception.h>
#include <quillon/tables/Cursor.h>

#include <cerrno>
#include <cstring>
#include <deque>
#include <list>
#include <string>
#include <utility>
#include <vector>

#include "ArrowAbi.h"
#include "Errors.h"

namespace quillon::python {
namespace {

using tables::Column;
using tables::ColumnType;

constexpr int64_t NULLABLE = 2;  // ARROW_FLAG_NULLABLE

const char* formatOf(ColumnType type) {
  switch (type) {
    case ColumnType::Int8:
      return "c";
    case ColumnType::Int16:
      return "s";
    case ColumnType::Int32:
      return "i";
    case ColumnType::Int64:
      return "l";
    case ColumnType::UInt8:
      return "C";
    case ColumnType::UInt16:
      return "S";
    case ColumnType::UInt32:
      return "I";
    case ColumnType::UInt64:
      return "L";
    case ColumnType::Float32:
      return "f";
    case ColumnType::Float64:
      return "g";
    case ColumnType::Boolean:
      return "b";
    case ColumnType::Text:
      return "u";
    case ColumnType::Time:
      return "tsu:";
  }
  return "n";
}

/// What stands behind a schema or an array: its parts, which are released with it.
template <class Part>
struct Parts {
  std::vector<Part> children;
  std::vector<Part*> pointers;
  std::list<std::string> texts;
  std::vector<std::vector<char>> buffers;
  std::vector<const void*> addresses;
};

/// Releases all that is left of `part`, and its children.
template <class Part>
void release(Part* part) {
  auto* const parts = static_cast<Parts<Part>*>(part->private_data);
  for (Part& child : parts->children) {
    if (child.release != nullptr) {
      child.release(&child);
    }
  }
  delete parts;
  part->release = nullptr;
}

template <class Part>
void setChildren(Part& part, Parts<Part>& parts) {
  for (Part& child : parts.children) {
    parts.pointers.push_back(&child);
  }
  part.n_children = static_cast<int64_t>(parts.pointers.size());
  part.children = parts.pointers.data();
}

void fillSchema(ArrowSchema& schema, const char* format, const std::string& name, int64_t flags) {
  auto* const parts = new Parts<ArrowSchema>();
  schema = {};
  schema.format = format;
  schema.name = parts->texts.emplace_back(name).c_str();
  schema.flags = flags;
  schema.release = &release<ArrowSchema>;
  schema.private_data = parts;
}

void fillSchema(ArrowSchema& schema, const tables::Table& table) {
  fillSchema(schema, "+s", "", 0);
  auto& parts = *static_cast<Parts<ArrowSchema>*>(schema.private_data);
  parts.children.resize(table.columns().size());
  for (std::size_t k = 0; k < parts.children.size(); ++k) {
    const Column& column = table.columns()[k];
    fillSchema(parts.children[k], formatOf(column.type), column.name, NULLABLE);
  }
  setChildren(schema, parts);
}

std::vector<char> bytesOf(const void* first, std::size_t count) {
  const auto* const bytes = static_cast<const char*>(first);
  return {bytes, bytes + count};
}

/// One bit for each of `count` rows.
template <class IsSet>
std::vector<char> bitsOf(unsigned long count, const IsSet& isSet) {
  std::vector<unsigned char> bits((count + 7) / 8, 0);
  for (unsigned long k = 0; k < count; ++k) {
    if (isSet(k)) {
      bits[k / 8] = static_cast<unsigned char>(bits[k / 8] | (1U << (k % 8)));
    }
  }
  return {bits.begin(), bits.end()};
}

void addTexts(const std::string* texts, unsigned long count, Parts<ArrowArray>& parts) {
  std::vector<int32_t> offsets = {0};
  std::vector<char> characters;
  for (unsigned long k = 0; k < count; ++k) {
    characters.insert(characters.end(), texts[k].begin(), texts[k].end());
    offsets.push_back(static_cast<int32_t>(characters.size()));
  }
  parts.buffers.push_back(bytesOf(offsets.data(), offsets.size() * sizeof(int32_t)));
  characters.reserve(1);  // an address even for no characters
  parts.buffers.push_back(std::move(characters));
}

/// The run's cells of a column. NaN stays a number; times that are missing are null.
void fillColumn(ArrowArray& array, const tables::Cursor& cursor, unsigned long column,
                ColumnType type) {
  auto* const parts = new Parts<ArrowArray>();
  array = {};
  array.release = &release<ArrowArray>;
  array.private_data = parts;
  const unsigned long rows = cursor.rows();
  array.length = static_cast<int64_t>(rows);
  std::vector<char> validity;
  if (type == ColumnType::Time) {
    validity = bitsOf(rows, [&](unsigned long k) { return !cursor.isMissing(column, k); });
    for (unsigned long k = 0; k < rows; ++k) {
      array.null_count += cursor.isMissing(column, k) ? 1 : 0;
    }
  }
  parts->buffers.push_back(std::move(validity));
  tables::visitColumnType(type, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    const T* const cells = cursor.cells<T>(column);
    if constexpr (std::is_same_v<T, std::string>) {
      addTexts(cells, rows, *parts);
    } else if constexpr (std::is_same_v<T, bool>) {
      parts->buffers.push_back(bitsOf(rows, [&](unsigned long k) { return cells[k]; }));
    } else {
      parts->buffers.push_back(bytesOf(cells, rows * sizeof(T)));
    }
  });
  for (const std::vector<char>& buffer : parts->buffers) {
    const bool isValidity = parts->addresses.empty();
    parts->addresses.push_back(isValidity && array.null_count == 0 ? nullptr : buffer.data());
  }
  array.n_buffers = static_cast<int64_t>(parts->addresses.size());
  array.buffers = parts->addresses.data();
}

/// What stands behind a stream.
class Stream {
 public:
  explicit Stream(const TableHandle& handle) : m_handle(handle), m_cursor(handle.shown()) {}

  void schema(ArrowSchema& out) const { fillSchema(out, m_handle.shown()); }

  void next(ArrowArray& out) {
    out = {};
    if (!m_cursor.next()) {
      return;  // a released array is the end
    }
    auto* const parts = new Parts<ArrowArray>();
    out.release = &release<ArrowArray>;
    out.private_data = parts;
    out.length = static_cast<int64_t>(m_cursor.rows());
    const auto& columns = m_handle.shown().columns();
    parts->children.resize(columns.size());
    for (std::size_t k = 0; k < columns.size(); ++k) {
      fillColumn(parts->children[k], m_cursor, k, columns[k].type);
    }
    setChildren(out, *parts);
    parts->addresses.push_back(nullptr);
    out.n_buffers = 1;
    out.buffers = parts->addresses.data();
  }

  /// Calls `run()`; what it throws becomes an error number and the last error.
  template <class Run>
  int guarded(const Run& run) {
    try {
      run();
      return 0;
    } catch (const Raised&) {
      m_error = "a Python function that gives values raised an exception";
    } catch (const object_model::Exception& error) {
      m_error = error.what();
    } catch (const std::exception& error) {
      m_error = error.what();
    }
    return EIO;
  }

  const char* lastError() const { return m_error.c_str(); }

 private:
  TableHandle m_handle;
  tables::Cursor m_cursor;
  std::string m_error;
};

Stream& streamOf(ArrowArrayStream* stream) { return *static_cast<Stream*>(stream->private_data); }

int getSchema(ArrowArrayStream* stream, ArrowSchema* out) {
  return streamOf(stream).guarded([&] { streamOf(stream).schema(*out); });
}

int getNext(ArrowArrayStream* stream, ArrowArray* out) {
  return streamOf(stream).guarded([&] { streamOf(stream).next(*out); });
}

const char* getLastError(ArrowArrayStream* stream) { return streamOf(stream).lastError(); }

void releaseStream(ArrowArrayStream* stream) {
  delete &streamOf(stream);
  stream->release = nullptr;
}

/// A capsule that releases what nobody has taken out of it.
template <class T>
py::capsule capsuleOf(std::unique_ptr<T> content, const char* name) {
  py::capsule capsule(content.get(), name, [](PyObject* object) {
    auto* const left = static_cast<T*>(PyCapsule_GetPointer(object, PyCapsule_GetName(object)));
    if (left->release != nullptr) {
      left->release(left);
    }
    delete left;
  });
  static_cast<void>(content.release());  // the capsule's from now on
  return capsule;
}

}  // namespace

py::capsule arrowSchema(const TableHandle& table) {
  auto schema = std::make_unique<ArrowSchema>();
  fillSchema(*schema, table.shown());
  return capsuleOf(std::move(schema), "arrow_schema");
}

py::capsule arrowStream(const TableHandle& table) {
  auto stream = std::make_unique<ArrowArrayStream>();
  *stream = {&getSchema, &getNext, &getLastError, &releaseStream, new Stream(table)};
  return capsuleOf(std::move(stream), "arrow_array_stream");
}

}  // namespace quillon::python
