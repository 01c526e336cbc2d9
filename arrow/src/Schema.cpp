#include "Schema.h"

#include <string>
#include <utility>

#include "FieldMetadata.h"
#include "Parts.h"

namespace quillon::arrow {
namespace {

using tables::Column;
using tables::ColumnType;

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
    case ColumnType::Time:
      return "tsu:";
    // never true, never run: fieldOf() asks isText() before
    case ColumnType::Text:
      break;  // never run: fieldOf() asks isText() before
  }
  return "u";  // never run: fieldOf() asks isText() before
}

/// A text that lives as long as the parts.
const char* keep(std::string text, Parts<ArrowSchema>& parts) {
  auto kept = std::make_shared<const std::string>(std::move(text));
  const char* const characters = kept->c_str();
  parts.kept.push_back(std::move(kept));
  return characters;
}

Owned<ArrowSchema> fieldOf(const Column& column) {
  auto parts = std::make_unique<Parts<ArrowSchema>>();
  const char* const name = keep(column.name, *parts);
  const char* const metadata =
      column.unit.empty() ? nullptr : keep(encodedMetadata(UNITS, column.unit), *parts);
  Owned<ArrowSchema> field = structureOf(std::move(parts));
  field->format = isText(column) ? "u" : formatOf(column.type);
  field->name = name;
  field->metadata = metadata;
  field->flags = ARROW_FLAG_NULLABLE;
  return field;
}

}  // namespace

bool isText(const Column& column) {
  return column.type == ColumnType::Text ||
         (column.type == ColumnType::Time && column.calendar != memory::Calendar::Standard &&
          column.calendar != memory::Calendar::ProlepticGregorian);
}

Owned<ArrowSchema> schemaOf(const tables::Table& table) {
  auto parts = std::make_unique<Parts<ArrowSchema>>();
  for (const Column& column : table.columns()) {
    parts->children.push_back(fieldOf(column));
  }
  Owned<ArrowSchema> schema = structureOf(std::move(parts));
  schema->format = "+s";
  schema->name = "";
  return schema;
}

}  // namespace quillon::arrow
