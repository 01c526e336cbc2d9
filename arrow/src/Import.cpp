#include <quillon/arrow/Import.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>

#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "ImportedColumn.h"

namespace quillon::arrow {
namespace {

using memory::inQuotes;
using tables::Error;

std::string nameOf(const ArrowSchema& field) { return field.name == nullptr ? "" : field.name; }

std::string formatOf(const ArrowSchema& field) {
  return field.format == nullptr ? "" : field.format;
}

/// @throws Error with the stream's words where a call of it has failed.
void requireSuccess(int status, Owned<ArrowArrayStream>& stream) {
  if (status == 0) {
    return;
  }
  const char* const words = stream->get_last_error(stream.get());
  throw Error("The stream failed: " + (words == nullptr || *words == '\0'
                                           ? std::generic_category().message(status)
                                           : memory::disarmed(words)));
}

Owned<ArrowSchema> schemaOf(Owned<ArrowArrayStream>& stream) {
  Owned<ArrowSchema> schema;
  requireSuccess(stream->get_schema(stream.get(), schema.get()), stream);
  if (formatOf(*schema.get()) != "+s") {
    throw Error("The stream has values of the format " + inQuotes(formatOf(*schema.get())) +
                ", not rows of columns");
  }
  return schema;
}

/// @throws Error that names a column that no table can have.
std::vector<const ImportedType*> typesOf(const ArrowSchema& schema) {
  std::vector<const ImportedType*> types;
  for (int64_t k = 0; k < schema.n_children; ++k) {
    const ArrowSchema& field = *schema.children[k];
    const std::string column = "The column " + inQuotes(nameOf(field));
    if (field.dictionary != nullptr) {
      throw Error(column + " is encoded by a dictionary of the format " +
                  inQuotes(formatOf(*field.dictionary)) + ", which tables do not read");
    }
    types.push_back(importedType(formatOf(field)));
    if (types.back() == nullptr) {
      throw Error(column + " is of the format " + inQuotes(formatOf(field)) +
                  ", which tables do not read");
    }
  }
  return types;
}

bool hasNulls(const ArrowArray& batch) {
  for (int64_t row = 0; row < batch.length; ++row) {
    if (isNull(batch, static_cast<unsigned long>(batch.offset + row))) {
      return true;
    }
  }
  return false;
}

bool fits(const ArrowArray& column, const ArrowArray& batch, const ImportedType& type) {
  return column.offset >= 0 && column.length >= batch.offset + batch.length &&
         column.n_buffers >= type.buffers && column.dictionary == nullptr &&
         (batch.length == 0 || column.buffers[1] != nullptr);
}

/// @throws Error for a batch that is not what the schema says.
void requireFits(const ArrowArray& batch, const std::vector<const ImportedType*>& types) {
  bool doesFit = batch.length >= 0 && batch.offset >= 0 &&
                 batch.n_children == static_cast<int64_t>(types.size());
  for (std::size_t k = 0; doesFit && k < types.size(); ++k) {
    doesFit = fits(*batch.children[k], batch, *types[k]);
  }
  if (!doesFit) {
    throw Error("The stream has a batch that does not fit its schema");
  }
  if (hasNulls(batch)) {
    throw Error("The stream has rows that are null as a whole, which tables do not have");
  }
}

std::shared_ptr<const Batches> batchesOf(Owned<ArrowArrayStream>& stream,
                                         const std::vector<const ImportedType*>& types) {
  auto batches = std::make_shared<Batches>();
  for (;;) {
    Owned<ArrowArray> batch;
    requireSuccess(stream->get_next(stream.get(), batch.get()), stream);
    if (!batch) {
      return batches;
    }
    requireFits(*batch.get(), types);
    if (batch->length > 0) {
      batches->ends.push_back(batches->rows() + static_cast<unsigned long>(batch->length));
      batches->arrays.push_back(std::move(batch));
    }
  }
}

}  // namespace

tables::Table importTable(ArrowArrayStream* stream) {
  Owned<ArrowArrayStream> owned(stream);
  if (!owned) {
    throw Error("The stream has been released");
  }
  const Owned<ArrowSchema> schema = schemaOf(owned);
  const std::vector<const ImportedType*> types = typesOf(*schema.get());
  const std::shared_ptr<const Batches> batches = batchesOf(owned, types);
  std::vector<std::unique_ptr<tables::ColumnSource>> columns;
  for (std::size_t k = 0; k < types.size(); ++k) {
    columns.push_back(
        std::make_unique<ImportedColumn>(*schema->children[k], *types[k], batches, k));
  }
  return {std::move(columns), batches->rows()};
}

}  // namespace quillon::arrow
