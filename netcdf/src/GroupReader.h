#pragma once

#include <quillon/memory/Dictionary.h>

#include <memory>
#include <string>
#include <vector>

#include "ArrayMaker.h"

namespace quillon::netcdf {

/// Reads what a group contains, with all groups below it, but no values.
///
/// Threads: to be used under libraryLock().
class GroupReader {
 public:
  /// Variables that have no place in the object model are appended to `skipped`.
  GroupReader(std::shared_ptr<const ArrayMaker> maker, std::vector<Skipped>& skipped);

  const Source& source() const { return m_maker->source(); }

  /// The group whose id is `group` as a dictionary called `name`. `path` is where it stands in the
  /// file, with a slash at its end.
  memory::Dictionary read(int group, const std::string& name, const std::string& path);

 private:
  void addVariables(int group, const std::string& path, memory::Dictionary& to);
  void addGroups(int group, const std::string& path, memory::Dictionary& to);
  void requireFree(const memory::Dictionary& dictionary, const std::string& path,
                   const std::string& name) const;

  std::shared_ptr<const ArrayMaker> m_maker;
  std::vector<Skipped>& m_skipped;
};

}  // namespace quillon::netcdf
