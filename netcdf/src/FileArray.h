#pragma once

#include <quillon/memory/ArrayBase.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Variable.h"

namespace quillon::netcdf {

/// What arrays over a variable of a file have in common: the variable, and the coordinates of its
/// axes, which are looked for when they are asked for.
///
/// Threads: const operations may run concurrently, but not under libraryLock().
class FileArray : public memory::ArrayBase {
 public:
  FileArray(object_model::ElementType type, Variable variable, const std::string& name,
            std::vector<memory::Axis> axes, const std::string& description)
      : ArrayBase(name, type, std::move(axes), description), m_variable(std::move(variable)) {}

  /// Those that were set, else those in the file. @throws Error where these cannot be read.
  std::shared_ptr<const object_model::Array> coordinates(unsigned long dimension) const override;

  /// Whether its values are made of stored ones of another type.
  virtual bool isDecoded() const { return false; }

 protected:
  Variable m_variable;
};

}  // namespace quillon::netcdf
