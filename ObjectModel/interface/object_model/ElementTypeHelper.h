/// @file
/// How much storage one array element takes.
#pragma once

#include <object_model/ElementType.h>
#include <object_model/Export.h>

namespace object_model::helper {

/// The number of bytes that one element of `type` takes in an array's storage.
///
/// 8 for `UInt`, `Int` and `Double`, 16 for `Complex`, 32 for `String` (the string object, not its
/// characters), 1 for `Boolean`.
///
/// @throws InvalidCall for `Dictionary`, whose elements have no fixed size, and for a value outside
///   the enumeration.
/// Threads: may be called from any thread at any time.
OBJECT_MODEL_EXPORT unsigned long sizeOfElementType(ElementType type);

}  // namespace object_model::helper
