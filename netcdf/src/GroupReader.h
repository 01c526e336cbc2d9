#pragma once

#include <quillon/memory/Dictionary.h>

#include <memory>
#include <string>
#include <vector>

#include "Source.h"

namespace quillon::netcdf {

/// Reads what a group contains, with all groups below it, but no values.
class GroupReader {
 public:
  /// Variables that have no place in the object model are appended to `skipped`.
  GroupReader(std::shared_ptr<const Source> source, std::vector<Skipped>& skipped);

  /// The group whose id is `group` as a dictionary called `name`. `path` is where it stands in the
  /// file, with a slash at its end.
  memory::Dictionary read(int group, const std::string& name, const std::string& path);

 private:
  void addVariables(int group, const std::string& path, memory::Dictionary& to);
  void addGroups(int group, const std::string& path, memory::Dictionary& to);
  std::unique_ptr<object_model::Data> makeArray(int group, int id, const std::string& path);
  void requireFree(const memory::Dictionary& dictionary, const std::string& path,
                   const std::string& name) const;

  std::shared_ptr<const Source> m_source;
  std::vector<Skipped>& m_skipped;
};

}  // namespace quillon::netcdf
