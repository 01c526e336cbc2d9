#pragma once

#include <quillon/arrow/Export.h>
#include <quillon/arrow/Owned.h>
#include <quillon/tables/Writers.h>

#include <charconv>
#include <cstdint>
#include <cstring>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace quillon::arrow {

using OwnedStream = Owned<ArrowArrayStream>;

inline OwnedStream streamOf(const tables::Table& table, const StreamOptions& options = {}) {
  OwnedStream stream;
  exportTable(table, stream.get(), options);
  return stream;
}

/// A field as "name:format", with its metadata's bytes where it has some.
inline std::string shown(const ArrowSchema& schema) {
  std::string text = std::string(schema.name) + ":" + schema.format;
  if (schema.metadata != nullptr) {
    int32_t lengths[2];
    std::memcpy(lengths, schema.metadata, sizeof(lengths));
    const char* const key = schema.metadata + sizeof(lengths);
    int32_t length = 0;
    std::memcpy(&length, key + lengths[1], sizeof(length));
    text += "[" + std::to_string(lengths[0]) + " " + std::string(key, key + lengths[1]) + "=" +
            std::string(key + lengths[1] + sizeof(length), static_cast<std::size_t>(length)) + "]";
  }
  text += (schema.flags & ARROW_FLAG_NULLABLE) != 0 ? "?" : "";
  for (int64_t k = 0; k < schema.n_children; ++k) {
    text += (k == 0 ? " " : ", ") + shown(*schema.children[k]);
  }
  return text;
}

inline bool isValid(const ArrowArray& array, int64_t row) {
  const auto* const bits = static_cast<const unsigned char*>(array.buffers[0]);
  return bits == nullptr || (bits[row / 8] >> (row % 8) & 1) != 0;
}

template <class T>
std::string numberAt(const ArrowArray& array, int64_t row) {
  const T number = static_cast<const T*>(array.buffers[1])[row];
  std::ostringstream text;
  if constexpr (sizeof(T) == 1) {
    text << static_cast<int>(number);
  } else {
    text << number;
  }
  return text.str();
}

inline std::string textAt(const ArrowArray& array, int64_t row) {
  const auto* const offsets = static_cast<const int32_t*>(array.buffers[1]);
  const auto* const characters = static_cast<const char*>(array.buffers[2]);
  return "'" + std::string(characters + offsets[row], characters + offsets[row + 1]) + "'";
}

inline std::string truthAt(const ArrowArray& array, int64_t row) {
  const auto* const bits = static_cast<const unsigned char*>(array.buffers[1]);
  return (bits[row / 8] >> (row % 8) & 1) != 0 ? "true" : "false";
}

/// A cell as a consumer reads it that knows no more than the format.
inline std::string cellAt(const ArrowArray& array, const std::string& format, int64_t row) {
  using Show = std::string (*)(const ArrowArray&, int64_t);
  static const std::map<std::string, Show> BY_FORMAT = {{"c", &numberAt<signed char>},
                                                        {"s", &numberAt<short>},
                                                        {"i", &numberAt<int>},
                                                        {"l", &numberAt<long>},
                                                        {"C", &numberAt<unsigned char>},
                                                        {"S", &numberAt<unsigned short>},
                                                        {"I", &numberAt<unsigned int>},
                                                        {"L", &numberAt<unsigned long>},
                                                        {"f", &numberAt<float>},
                                                        {"g", &numberAt<double>},
                                                        {"tsu:", &numberAt<long>},
                                                        {"b", &truthAt},
                                                        {"u", &textAt}};
  return isValid(array, row) ? BY_FORMAT.at(format)(array, row) : "null";
}

/// A batch as a line for each column, such as "x: 1 2 null".
inline std::string shown(const ArrowArray& batch, const ArrowSchema& schema) {
  std::string text = std::to_string(batch.length) + " rows\n";
  for (int64_t k = 0; k < batch.n_children; ++k) {
    const ArrowArray& column = *batch.children[k];
    text += std::string(schema.children[k]->name) + ":";
    int64_t nulls = 0;
    for (int64_t row = 0; row < column.length; ++row) {
      text += " " + cellAt(column, schema.children[k]->format, row);
      nulls += isValid(column, row) ? 0 : 1;
    }
    const bool isRight = nulls == column.null_count && column.length == batch.length &&
                         column.offset == 0 && column.n_children == 0;
    text += isRight ? "\n" : " (but its counts are others)\n";
  }
  return text;
}

inline Owned<ArrowSchema> schemaOf(OwnedStream& stream) {
  Owned<ArrowSchema> schema;
  if (stream->get_schema(stream.get(), schema.get()) != 0) {
    schema.reset();
  }
  return schema;
}

/// All batches of a stream, as shown(); the last error ends them.
inline std::vector<std::string> batchesOf(OwnedStream stream) {
  const Owned<ArrowSchema> schema = schemaOf(stream);
  std::vector<std::string> batches;
  for (;;) {
    Owned<ArrowArray> batch;
    const int status = stream->get_next(stream.get(), batch.get());
    if (status != 0) {
      batches.push_back("error " + std::to_string(status) + ": " +
                        stream->get_last_error(stream.get()));
      return batches;
    }
    if (!batch) {
      return batches;
    }
    batches.push_back(shown(*batch.get(), *schema.get()));
  }
}

inline std::string csvOf(const tables::Table& table) {
  std::string text;
  tables::writeCsv(table, tables::into(text));
  return text;
}

}  // namespace quillon::arrow
