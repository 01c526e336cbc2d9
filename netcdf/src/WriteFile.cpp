#include "WriteFile.h"

#include <netcdf.h>
#include <quillon/memory/Wording.h>
#include <quillon/netcdf/LibraryLock.h>

#include <array>
#include <cerrno>
#include <mutex>
#include <type_traits>
#include <utility>
#include <variant>

#include "WriteAttributes.h"
#include "WriteNames.h"
#include "WriteRefusal.h"
#include "WriteTypes.h"
#include "WriteValues.h"

namespace quillon::netcdf {
namespace {

using memory::inQuotes;
using Name = std::array<char, NC_MAX_NAME + 1>;

unsigned long bytesOf(const std::vector<memory::Attribute>& attributes) {
  constexpr unsigned long BYTES_OF_A_NUMBER = 8;
  constexpr unsigned long BYTES_BESIDE = 512;
  unsigned long bytes = 0;
  for (const memory::Attribute& attribute : attributes) {
    bytes += BYTES_BESIDE + attribute.name.size();
    std::visit(
        [&](const auto& values) {
          bytes += values.size() * BYTES_OF_A_NUMBER;
          if constexpr (std::is_same_v<std::decay_t<decltype(values)>, std::vector<std::string>>) {
            for (const std::string& text : values) {
              bytes += BYTES_BESIDE + text.size();
            }
          }
        },
        attribute.value);
  }
  return bytes;
}

/// More than everything but the values takes in a file.
unsigned long outlineBytes(const Plan& plan) {
  constexpr unsigned long BYTES_OF_A_FILE = 128UL << 10U;
  constexpr unsigned long BYTES_OF_AN_OBJECT = 8UL << 10U;
  unsigned long bytes = BYTES_OF_A_FILE;
  for (const PlannedGroup& group : plan) {
    bytes += (1 + group.dimensions.size()) * BYTES_OF_AN_OBJECT + bytesOf(group.attributes);
    for (const PlannedVariable& variable : group.variables) {
      bytes += BYTES_OF_AN_OBJECT + bytesOf(variable.attributes);
    }
  }
  return bytes;
}

/// @return the id.
int defineDimension(const PlannedDimension& dimension, int group, const std::string& path) {
  const std::string subject = "axis " + inQuotes(dimension.name) + " in " + inQuotes(path);
  int id = -1;
  errno = 0;
  // A dimension of the fixed length 0 is none in netCDF: 0 stands for one without limit.
  static_assert(NC_UNLIMITED == 0);
  requireWritten(nc_def_dim(group, dimension.name.c_str(), dimension.size, &id),
                 subject + " cannot be written");
  Name kept{};
  if (nc_inq_dimname(group, id, kept.data()) == NC_NOERR) {
    requireKeptName(dimension.name, kept.data(), subject);
  }
  return id;
}

void compress(int group, int variable, const WriteOptions& options, const std::string& subject) {
  errno = 0;
  requireWritten(nc_def_var_deflate(group, variable, options.shuffle ? 1 : 0, 1, options.deflate),
                 subject);
}

void putAttributes(int group, int variable, const std::vector<memory::Attribute>& attributes,
                   const std::string& path) {
  for (const memory::Attribute& attribute : attributes) {
    putAttribute(group, variable, attribute, path);
  }
}

}  // namespace

NewFile::NewFile(const std::string& path, int descriptor, const Plan& plan)
    : m_plan(plan), m_room(descriptor, outlineBytes(plan)) {
  const std::lock_guard<std::mutex> guard(libraryLock());
  errno = 0;
  requireWritten(nc_create(path.c_str(), NC_NETCDF4 | NC_CLOBBER, &m_id), "it cannot be made");
  m_room.reserve();  // again, as the file was emptied
  // Every value is written, so that none has to be filled in before.
  nc_set_fill(m_id, NC_NOFILL, nullptr);
}

NewFile::~NewFile() {
  if (m_id >= 0) {
    const std::lock_guard<std::mutex> guard(libraryLock());
    nc_abort(m_id);
  }
}

void NewFile::define(const WriteOptions& options) {
  const std::lock_guard<std::mutex> guard(libraryLock());
  for (std::size_t group = 0; group < m_plan.size(); ++group) {
    defineGroup(group, options);
  }
  errno = 0;
  requireWritten(nc_enddef(m_id), "its groups and variables cannot be written");
}

void NewFile::defineGroup(std::size_t number, const WriteOptions& options) {
  const PlannedGroup& group = m_plan[number];
  int id = m_id;
  if (number != 0) {
    errno = 0;
    requireWritten(nc_def_grp(m_groups[group.parent], group.name.c_str(), &id),
                   "group " + inQuotes(group.path) + " cannot be written");
    Name kept{};
    if (nc_inq_grpname(id, kept.data()) == NC_NOERR) {  // never false: the group was just made
      requireKeptName(group.name, kept.data(), inQuotes(group.path));
    }
  }
  m_groups.push_back(id);
  putAttributes(id, NC_GLOBAL, group.attributes, group.path);
  m_dimensions.emplace_back();
  for (const PlannedDimension& dimension : group.dimensions) {
    m_dimensions.back().push_back(defineDimension(dimension, id, group.path));
  }
  m_variables.emplace_back();
  for (const PlannedVariable& variable : group.variables) {
    m_variables.back().push_back(defineVariable(variable, number, options));
  }
}

int NewFile::defineVariable(const PlannedVariable& variable, std::size_t group,
                            const WriteOptions& options) {
  const std::string subject = inQuotes(variable.path) + " cannot be written";
  std::vector<int> dimensions;
  for (const DimensionPlace place : variable.dimensions) {
    dimensions.push_back(m_dimensions[place.group][place.dimension]);
  }
  int id = -1;
  errno = 0;
  requireWritten(nc_def_var(m_groups[group], variable.name.c_str(), netcdfTypeOf(variable.type),
                            static_cast<int>(dimensions.size()), dimensions.data(), &id),
                 subject);
  Name kept{};
  if (nc_inq_varname(m_groups[group], id, kept.data()) == NC_NOERR) {
    requireKeptName(variable.name, kept.data(), inQuotes(variable.path));
  }
  if (options.deflate > 0 && variable.type && !dimensions.empty()) {
    compress(m_groups[group], id, options, subject);
  }
  putAttributes(m_groups[group], id, variable.attributes, variable.path);
  return id;
}

void NewFile::putValues() {
  for (std::size_t group = 0; group < m_plan.size(); ++group) {
    for (std::size_t k = 0; k < m_plan[group].variables.size(); ++k) {
      netcdf::putValues({m_plan[group].variables[k], m_id, m_groups[group], m_variables[group][k]},
                        m_room);
    }
  }
}

void NewFile::close() {
  const std::lock_guard<std::mutex> guard(libraryLock());
  errno = 0;
  requireWritten(nc_close(std::exchange(m_id, -1)), "it cannot be completed");
  m_room.release();
}

}  // namespace quillon::netcdf
