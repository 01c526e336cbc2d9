/// @file
/// What a table column holds.
#pragma once

#include <tabra/Export.h>

namespace tabra {

/// What one cell of a column holds. All three kinds take 8 bytes a cell. A table may know further
/// identifiers.
enum class DataTypeId : unsigned int {
  UInt64 = 0x10140,   ///< unsigned 64-bit integer (`unsigned long`)
  Int64 = 0x20140,    ///< signed 64-bit integer (`long`)
  Float64 = 0x30140,  ///< 64-bit IEEE floating point (`double`)
};

/// The type of a column: a small value that carries one identifier.
class TABRA_EXPORT DataType {
 public:
  /// The type with the identifier `id`, which is not checked.
  explicit DataType(DataTypeId id);

  /// The identifier that the type was made from.
  DataTypeId id() const;

 private:
  DataTypeId m_id;
};

}  // namespace tabra
