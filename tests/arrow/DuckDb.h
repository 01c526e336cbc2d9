#pragma once

#include <dlfcn.h>
#include <quillon/arrow/Import.h>
#include <quillon/arrow/Owned.h>
#include <quillon/tables/Table.h>

#include <cerrno>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quillon::arrow {

/// What is used here of DuckDB's C interface, as its header declares it.
struct DuckDbResult {
  uint64_t columns;
  uint64_t rows;
  uint64_t changed;
  void* data;
  char* message;
  void* internal;
};

/// DuckDB's shared library, loaded while the program runs.
class DuckDbLibrary {
 public:
  explicit DuckDbLibrary(const std::string& path) : m_handle(dlopen(path.c_str(), RTLD_NOW)) {
    if (m_handle == nullptr) {
      throw std::runtime_error(dlerror());
    }
  }

  /// The function of that name.
  template <class Function>
  Function* find(const char* name) const {
    void* const found = dlsym(m_handle, name);
    if (found == nullptr) {
      throw std::runtime_error(std::string("libduckdb.so has no ") + name);
    }
    return reinterpret_cast<Function*>(found);
  }

 private:
  void* m_handle;  // kept to the end of the program, as threads of it may be running
};

/// All batches of a result, as a stream.
struct DuckDbStream {
  Owned<ArrowSchema> schema;
  std::vector<Owned<ArrowArray>> batches;
  std::size_t next = 0;

  static DuckDbStream& behind(ArrowArrayStream* stream) {
    return *static_cast<DuckDbStream*>(stream->private_data);
  }
  static int getSchema(ArrowArrayStream* stream, ArrowSchema* out) {
    *out = std::exchange(*behind(stream).schema.get(), ArrowSchema());
    return 0;
  }
  static int getNext(ArrowArrayStream* stream, ArrowArray* out) {
    DuckDbStream& self = behind(stream);
    *out = self.next == self.batches.size()
               ? ArrowArray()
               : std::exchange(*self.batches[self.next++].get(), ArrowArray());
    return 0;
  }
  static const char* getLastError(ArrowArrayStream* /*stream*/) { return nullptr; }
  static void release(ArrowArrayStream* stream) { stream->release = nullptr; }

  ArrowArrayStream asStream() { return {&getSchema, &getNext, &getLastError, &release, this}; }
};

/// A database in memory.
class DuckDb {
 public:
  explicit DuckDb(const DuckDbLibrary& library) : m_library(library) {
    require(call<int(const char*, void**)>("duckdb_open")(nullptr, &m_database), "open");
    require(call<int(void*, void**)>("duckdb_connect")(m_database, &m_connection), "connect");
  }
  DuckDb(const DuckDb&) = delete;
  DuckDb& operator=(const DuckDb&) = delete;
  ~DuckDb() {
    call<void(void**)>("duckdb_disconnect")(&m_connection);
    call<void(void**)>("duckdb_close")(&m_database);
  }

  /// Makes a view of a stream, which is borrowed and can be read once. In 1.5 a query that names
  /// some of its columns gives the values of others.
  void scan(const std::string& view, ArrowArrayStream* stream) {
    require(call<int(void*, const char*, ArrowArrayStream*)>("duckdb_arrow_scan")(
                m_connection, view.c_str(), stream),
            "scan");
  }

  /// Makes a table of a stream: takes its view over whole.
  void take(const std::string& table, ArrowArrayStream* stream) {
    const std::string view = table + "_stream";
    scan(view, stream);
    run("create table " + table + " as select * from " + view);
    run("drop view " + view);
  }

  /// Runs a statement. @throws std::runtime_error with what DuckDB says.
  void run(const std::string& sql) {
    DuckDbResult result = resultOf(sql);
    destroy(result);
  }

  /// The rows of a query.
  tables::Table query(const std::string& sql) {
    DuckDbResult result = resultOf(sql);
    DuckDbStream stream;
    void* options = call<void*(DuckDbResult*)>("duckdb_result_get_arrow_options")(&result);
    readSchema(result, options, stream);
    while (void* chunk = call<void*(DuckDbResult)>("duckdb_fetch_chunk")(result)) {
      Owned<ArrowArray> batch;
      requireNone(call<void*(void*, void*, ArrowArray*)>("duckdb_data_chunk_to_arrow")(
          options, chunk, batch.get()));
      stream.batches.push_back(std::move(batch));
      call<void(void**)>("duckdb_destroy_data_chunk")(&chunk);
    }
    call<void(void**)>("duckdb_destroy_arrow_options")(&options);
    destroy(result);
    ArrowArrayStream all = stream.asStream();
    return importTable(&all);
  }

 private:
  template <class Function>
  Function* call(const char* name) const {
    return m_library.find<Function>(name);
  }

  static void require(int state, const std::string& what) {
    if (state != 0) {
      throw std::runtime_error("DuckDB cannot " + what);
    }
  }

  void requireNone(void* error) const {
    if (error != nullptr && call<bool(void*)>("duckdb_error_data_has_error")(error)) {
      throw std::runtime_error(call<const char*(void*)>("duckdb_error_data_message")(error));
    }
  }

  DuckDbResult resultOf(const std::string& sql) {
    DuckDbResult result = {};
    if (call<int(void*, const char*, DuckDbResult*)>("duckdb_query")(m_connection, sql.c_str(),
                                                                     &result) != 0) {
      const std::string words = call<const char*(DuckDbResult*)>("duckdb_result_error")(&result);
      destroy(result);
      throw std::runtime_error(words);
    }
    return result;
  }

  void destroy(DuckDbResult& result) const {
    call<void(DuckDbResult*)>("duckdb_destroy_result")(&result);
  }

  void readSchema(DuckDbResult& result, void* options, DuckDbStream& stream) const {
    const uint64_t columns = call<uint64_t(DuckDbResult*)>("duckdb_column_count")(&result);
    std::vector<void*> types;
    std::vector<const char*> names;
    for (uint64_t k = 0; k < columns; ++k) {
      types.push_back(
          call<void*(DuckDbResult*, uint64_t)>("duckdb_column_logical_type")(&result, k));
      names.push_back(call<const char*(DuckDbResult*, uint64_t)>("duckdb_column_name")(&result, k));
    }
    requireNone(
        call<void*(void*, void**, const char**, uint64_t, ArrowSchema*)>("duckdb_to_arrow_schema")(
            options, types.data(), names.data(), columns, stream.schema.get()));
    for (void*& type : types) {
      call<void(void**)>("duckdb_destroy_logical_type")(&type);
    }
  }

  const DuckDbLibrary& m_library;
  void* m_database = nullptr;
  void* m_connection = nullptr;
};

}  // namespace quillon::arrow
