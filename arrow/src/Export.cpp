#include <object_model/Exception.h>
#include <quillon/arrow/Export.h>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <stdexcept>
#include <utility>

#include "Batch.h"
#include "Parts.h"
#include "Schema.h"

namespace quillon::arrow {
namespace {

/// What stands behind a stream.
class Stream {
 public:
  Stream(tables::Table table, StreamOptions options)
      : m_table(std::move(table)), m_options(std::move(options)) {}

  int getSchema(ArrowSchema* out) {
    return guarded([&] { handOver(schemaOf(m_table), out); });
  }

  int getNext(ArrowArray* out) {
    *out = {};  // a released array, which is the end unless there are rows left
    return guarded([&] {
      const unsigned long count = std::min(m_table.runFrom(m_row), m_options.maxRows);
      if (count > 0) {
        handOver(batchOf(m_table, {m_row, count}, m_options.nanIsNull), out);
        m_row += count;
      }
    });
  }

  const char* lastError() const { return m_error.empty() ? nullptr : m_error.c_str(); }

 private:
  /// Calls `run()`; what it throws becomes an error number and the last error.
  template <class Run>
  int guarded(const Run& run) {
    try {
      run();
      m_error.clear();
      return 0;
    } catch (const std::bad_alloc&) {
      m_error.clear();
      return ENOMEM;
    } catch (...) {
      tell();
      return EIO;
    }
  }

  void tell() {
    try {
      m_error = wordsOfWhatIsHandled();
    } catch (...) {
      m_error.clear();  // there are no words then
    }
  }

  std::string wordsOfWhatIsHandled() const {
    try {
      throw;
    } catch (const object_model::Exception& error) {
      return error.what();
    } catch (const std::exception& error) {
      return error.what();
    } catch (...) {
      return m_options.explain ? m_options.explain() : "The cells could not be read";
    }
  }

  tables::Table m_table;
  StreamOptions m_options;
  unsigned long m_row = 0;
  std::string m_error;
};

Stream& behind(ArrowArrayStream* stream) { return *static_cast<Stream*>(stream->private_data); }

int getSchema(ArrowArrayStream* stream, ArrowSchema* out) { return behind(stream).getSchema(out); }

int getNext(ArrowArrayStream* stream, ArrowArray* out) { return behind(stream).getNext(out); }

const char* getLastError(ArrowArrayStream* stream) { return behind(stream).lastError(); }

void releaseStream(ArrowArrayStream* stream) {
  delete &behind(stream);
  stream->release = nullptr;
}

}  // namespace

void exportTable(const tables::Table& table, ArrowArrayStream* stream,
                 const StreamOptions& options) {
  if (options.maxRows == 0) {
    throw std::invalid_argument("A batch has one row at least, not 0");
  }
  auto behind = std::make_unique<Stream>(table, options);
  *stream = {&getSchema, &getNext, &getLastError, &releaseStream, behind.release()};
}

void exportView(std::shared_ptr<const tabra::DataFrameView> view, ArrowArrayStream* stream,
                const StreamOptions& options) {
  exportTable(tables::Table(std::move(view)), stream, options);
}

void exportView(const tabra::DataFrameView& view, ArrowArrayStream* stream,
                const StreamOptions& options) {
  exportTable(tables::Table(view), stream, options);
}

void exportSchema(const tables::Table& table, ArrowSchema* schema) {
  handOver(schemaOf(table), schema);
}

}  // namespace quillon::arrow
