/// @file
/// The registry of dictionary descriptors by object name.
#pragma once

#include <object_model/Export.h>

#include <map>
#include <memory>
#include <string>

namespace object_model {

class DictionaryInfo;

/// A registry that maps object names to dictionary descriptors. The one of the process is
/// instance().
///
/// Names are kept in ascending order of their bytes ("Abc" before "abc", a prefix before what it
/// starts), which is the order of the positions below. Entries are added and overwritten, never
/// removed.
///
/// Ownership: the names are copied, the descriptors are not: whoever registers one keeps it alive
/// for as long as it stays registered. The registry never calls a descriptor; it may be null.
/// Threads: no locks are taken. The first instance() may be called from many threads at once.
/// registerObject(), and getInfoByName() of a name that is not registered, must not run beside any
/// other call; all else may run concurrently.
/// ABI: no virtuals; the only field is the pointer to the map.
class OBJECT_MODEL_EXPORT Namespace {
 public:
  /// An empty registry.
  Namespace();
  ~Namespace();
  Namespace(const Namespace&) = delete;
  Namespace& operator=(const Namespace&) = delete;

  /// The registry of the process, made on first use and kept until the process ends.
  static Namespace& instance();

  /// The number of registered names.
  unsigned long getNumOfObject() const;

  /// The name at position `index`, as an independent copy. Each call steps there from the first
  /// name.
  /// @param index below getNumOfObject(); it is not checked.
  std::string getObjectName(unsigned long index) const;

  /// The descriptor at position `index`, which may be null.
  ///
  /// A literal 0 fits the overload for names as well: write `getInfo(0UL)`, on a const reference.
  /// @param index below getNumOfObject(); it is not checked.
  const DictionaryInfo* getInfo(unsigned long index) const;

  /// The descriptor registered under `name`, which may be null.
  /// @throws InvalidCall "Invalid object name (NAME)." when there is none; nothing is changed.
  const DictionaryInfo* getInfo(const std::string& name);

  /// Registers `info` (or null) under `name` in place of whatever was registered under it.
  /// @throws std::bad_alloc when memory runs out; nothing is changed.
  void registerObject(const std::string& name, const DictionaryInfo* info);

  /// The descriptor registered under `name`, or null.
  ///
  /// A name that is not registered becomes so, with a null descriptor, although the operation is
  /// const: it then counts, is listed, and getInfo(name) yields null for it. To ask without
  /// registering, catch the InvalidCall of getInfo(name).
  /// @throws std::bad_alloc when memory runs out; nothing is changed.
  const DictionaryInfo* getInfoByName(const std::string& name) const;

 private:
  std::unique_ptr<std::map<std::string, const DictionaryInfo*>> m_infos;
};

}  // namespace object_model
