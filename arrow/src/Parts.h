#pragma once

#include <quillon/arrow/Owned.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillon::arrow {

/// What stands behind a schema or an array and is released with it. Children that somebody has
/// moved elsewhere stay whole.
template <class Structure>
struct Parts {
  std::vector<Owned<Structure>> children;
  std::vector<Structure*> pointers;  // to these
  std::vector<const void*> buffers;
  std::vector<std::shared_ptr<const void>> kept;  // what the structure points into
};

template <class Structure>
void releaseParts(Structure* structure) {
  delete static_cast<Parts<Structure>*>(structure->private_data);
  structure->release = nullptr;
}

/// A structure with these parts, whose own fields are yet to be set.
template <class Structure>
Owned<Structure> structureOf(std::unique_ptr<Parts<Structure>> parts) {
  for (Owned<Structure>& child : parts->children) {
    parts->pointers.push_back(child.get());
  }
  Owned<Structure> structure;
  structure->n_children = static_cast<int64_t>(parts->pointers.size());
  structure->children = parts->pointers.data();
  structure->release = &releaseParts<Structure>;
  structure->private_data = parts.release();
  return structure;
}

/// Hands a structure over to whoever has made room for it.
template <class Structure>
void handOver(Owned<Structure> structure, Structure* destination) {
  *destination = std::exchange(*structure.get(), Structure());
}

}  // namespace quillon::arrow
