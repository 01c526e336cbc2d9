/// @file
/// Some entries of a dictionary.
#pragma once

#include <object_model/Dictionary.h>
#include <quillon/memory/Facets.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace quillon::memory {

/// Some of the entries of a dictionary, the group, as a dictionary of their own, in the group's
/// order. Descriptor and attributes are the group's. A dictionary of which only a part is chosen is
/// itself a selection.
///
/// Ownership: borrows the group and its entries, which must outlive it and stay in it; the entries
/// keep the group as their parent. Threads: const operations may run concurrently where the group's
/// may.
class Selection final : public object_model::Dictionary, public HasAttributes {
 public:
  /// The entries of `group` that are called `names`, which may stand in any order. Paths such as
  /// "cells/area" choose from the dictionaries in it; "cells/" chooses nothing of one, which is
  /// there empty unless others of the names choose from it.
  /// @throws what the group throws for a name that it does not have, and std::out_of_range for a
  ///   path that leads through no dictionary. What lies in an entry that is chosen whole is not
  ///   looked at.
  Selection(object_model::Dictionary& group, const std::vector<std::string>& names);

  /// The group's descriptor.
  const object_model::DataInfo* getInformation() const override;
  /// The group's parent.
  const object_model::Data* parent() const override;
  /// The group's parent.
  object_model::Data* parent() override;
  /// @throws InvalidCall always: a selection stands in no container.
  void setParent(object_model::Data* parent) override;

  bool isDynamicDictionary() const override;
  object_model::DynamicDictionary* asDynamicDictionary() override;
  const object_model::DynamicDictionary* asDynamicDictionary() const override;

  unsigned long getNumOfData() const override;
  void reservedDictionary0() const override;
  void reservedDictionary1() const override;
  /// @throws std::out_of_range for a position that has no entry.
  std::string getDataName(int index) const override;
  using object_model::Dictionary::data;
  /// @throws std::out_of_range for a name that was not chosen.
  object_model::Data* data(const std::string& name) override;
  /// @copydoc data
  const object_model::Data* data(const std::string& name) const override;

  /// Those of the group; none where it has none to offer.
  std::vector<Attribute> attributes() const override;

 private:
  object_model::Data* entry(const std::string& name) const;
  void addPart(const std::string& name, const std::vector<std::string>& names);

  object_model::Dictionary& m_group;
  std::vector<std::unique_ptr<Selection>> m_parts;
  std::vector<std::string> m_names;
  std::unordered_map<std::string, object_model::Data*> m_entries;
};

}  // namespace quillon::memory
