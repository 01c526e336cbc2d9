#include <netcdf.h>
#include <quillon/netcdf/File.h>
#include <quillon/netcdf/LibraryLock.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <utility>

#include "GroupReader.h"
#include "HiddenObjects.h"
#include "Source.h"

namespace quillon::netcdf {
namespace {

/// The next part of a path from `position` on, which moves behind it; empty at the path's end.
std::string nextPart(const std::string& path, std::size_t& position) {
  const std::size_t begin = path.find_first_not_of('/', position);
  if (begin == std::string::npos) {
    return {};
  }
  position = std::min(path.find('/', begin), path.size());
  return path.substr(begin, position - begin);
}

/// Says which groups there are instead of the one that was asked for.
std::string groupsIn(const memory::Dictionary& group) {
  std::string names;
  for (int k = 0; k < static_cast<int>(group.getNumOfData()); ++k) {
    if (group.data(k)->isDictionary()) {
      names += (names.empty() ? "'" : ", '") + group.getDataName(k) + "'";
    }
  }
  return "'" + group.getName() + "' " + (names.empty() ? "has no groups" : "has " + names);
}

const memory::Dictionary& findGroup(const std::string& file, const memory::Dictionary& root,
                                    const std::string& path) {
  const memory::Dictionary* group = &root;
  std::size_t position = 0;
  for (std::string part = nextPart(path, position); !part.empty();
       part = nextPart(path, position)) {
    const auto* found = group->contains(part)
                            ? dynamic_cast<const memory::Dictionary*>(group->data(part))
                            : nullptr;
    if (found == nullptr) {
      failReading(file,
                  "there is no group '" + path.substr(0, position) + "'; " + groupsIn(*group));
    }
    group = found;
  }
  return *group;
}

/// As the reader does it, but a group that claims more than memory holds is an error of its file.
memory::Dictionary readGroup(GroupReader reader, int id, const std::string& name,
                             const std::string& path) {
  try {
    return reader.read(id, name, path);
  } catch (const std::bad_alloc&) {
    reader.source().fail("there is no memory for what group '" + path + "' claims to have");
  } catch (const std::length_error&) {
    reader.source().fail("there is no memory for what group '" + path + "' claims to have");
  }
}

}  // namespace

File::File(const std::string& path, const OpenOptions& options)
    : m_path(path), m_source(std::make_shared<const Source>(path, options)), m_root("/") {
  // Where this fails, the file is closed when the lock is free again.
  const std::lock_guard<std::mutex> guard(libraryLock());
  m_root = readGroup({m_source, m_skipped}, m_source->id(), "/", "/");
  listHidden(*m_source, m_skipped, m_hiddenAttributes);
}

memory::Dictionary& File::root() { return m_root; }
const memory::Dictionary& File::root() const { return m_root; }

memory::Dictionary& File::group(const std::string& path) {
  return const_cast<memory::Dictionary&>(std::as_const(*this).group(path));
}

const memory::Dictionary& File::group(const std::string& path) const {
  return findGroup(m_path, m_root, path);
}

memory::Dictionary File::corner(const std::string& path,
                                const std::map<std::string, unsigned long>& extents) const {
  const std::string name = group(path).getName();
  const std::lock_guard<std::mutex> guard(libraryLock());
  int id = m_source->id();
  std::string fullPath = "/";
  std::size_t position = 0;
  for (std::string part = nextPart(path, position); !part.empty();
       part = nextPart(path, position)) {
    fullPath += part;
    m_source->require(nc_inq_grp_ncid(id, part.c_str(), &id), "group '" + fullPath + "'");
    fullPath += "/";
  }
  std::vector<Skipped> skipped;  // known already
  return readGroup({m_source, skipped, extents}, id, name, fullPath);
}

std::string File::title() const { return m_root.getDescription(); }
const std::vector<Skipped>& File::skipped() const { return m_skipped; }
const std::vector<Skipped>& File::hiddenAttributes() const { return m_hiddenAttributes; }

}  // namespace quillon::netcdf
