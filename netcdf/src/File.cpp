#include <netcdf.h>
#include <quillon/memory/Wording.h>
#include <quillon/netcdf/File.h>
#include <quillon/netcdf/LibraryLock.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <new>
#include <set>
#include <stdexcept>
#include <utility>

#include "Facts.h"
#include "GroupReader.h"
#include "HiddenObjects.h"
#include "Ranges.h"
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

/// What `read` gives, but a group that claims more than memory holds is an error of its file.
template <class Read>
auto withinMemory(const Source& source, const std::string& path, const Read& read) {
  try {
    return read();
  } catch (const std::bad_alloc&) {
    source.fail("there is no memory for what group '" + path + "' claims to have");
  } catch (const std::length_error&) {  // never run: the library below has held as much before
    source.fail("there is no memory for what group '" + path + "' claims to have");
  }
}

/// A group's path with one slash before each part and at its end.
std::string fullPath(const std::string& path) {
  std::string full = "/";
  std::size_t position = 0;
  for (std::string part = nextPart(path, position); !part.empty();
       part = nextPart(path, position)) {
    full += part + "/";
  }
  return full;
}

}  // namespace

File::File(const std::string& path, const OpenOptions& options)
    : m_path(path), m_source(std::make_shared<const Source>(path, options)), m_root("/") {
  // Where this fails, the file is closed when the lock is free again.
  const std::lock_guard<std::mutex> guard(libraryLock());
  const auto maker = std::make_shared<const ArrayMaker>(m_source, RangeOf());
  m_root = withinMemory(
      *m_source, "/", [&] { return GroupReader(maker, m_skipped).read(m_source->id(), "/", "/"); });
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

int File::groupId(const std::string& path) const {
  int id = m_source->id();
  std::size_t position = 0;
  for (std::string part = nextPart(path, position); !part.empty();
       part = nextPart(path, position)) {
    m_source->require(nc_inq_grp_ncid(id, part.c_str(), &id), "group '" + path + "'");
  }
  return id;
}

memory::Dictionary File::read(
    const std::string& path,
    const std::function<Range(const std::string&, unsigned long)>& rangeOf) const {
  const std::string name = group(path).getName();
  const auto maker = std::make_shared<const ArrayMaker>(m_source, rangeOf);
  std::vector<Skipped> skipped;  // known already
  const std::lock_guard<std::mutex> guard(libraryLock());
  return withinMemory(*m_source, path, [&] {
    return GroupReader(maker, skipped).read(groupId(path), name, fullPath(path));
  });
}

memory::Dictionary File::select(const std::string& path,
                                const std::map<std::string, Range>& ranges) const {
  // The arrays keep what is asked here: they meet the dimensions of coordinates later.
  const auto met = std::make_shared<std::set<std::string>>();
  memory::Dictionary selected =
      read(path, [ranges, met](const std::string& name, unsigned long size) {
        const auto range = ranges.find(name);
        if (range == ranges.end()) {
          return Range{0, static_cast<long>(size), 1};
        }
        requireWithin(range->second, name, size);
        met->insert(name);
        return range->second;
      });
  for (const auto& [name, range] : ranges) {
    if (met->count(name) == 0) {
      throw std::invalid_argument("Group " + memory::inQuotes(selected.getName()) +
                                  " has no axis " + memory::inQuotes(name));
    }
  }
  return selected;
}

memory::Dictionary File::corner(const std::string& path,
                                const std::map<std::string, unsigned long>& extents) const {
  return read(path, [extents](const std::string& name, unsigned long size) {
    const auto extent = extents.find(name);
    const unsigned long count = extent == extents.end() ? size : std::min(extent->second, size);
    return Range{0, static_cast<long>(count), 1};
  });
}

GroupFacts File::facts(const std::string& path) const {
  group(path);  // which says what there is instead
  const std::lock_guard<std::mutex> guard(libraryLock());
  return factsOf(*m_source, groupId(path), fullPath(path), m_skipped);
}

std::string File::title() const { return m_root.getDescription(); }
const std::vector<Skipped>& File::skipped() const { return m_skipped; }
const std::vector<Skipped>& File::hiddenAttributes() const { return m_hiddenAttributes; }

}  // namespace quillon::netcdf
