/// @file
/// Attributes that an object keeps itself.
#pragma once

#include <quillon/memory/Facets.h>

#include <memory>
#include <string>
#include <vector>

namespace quillon::memory {

/// What arrays and dictionaries in memory derive from to keep attributes. A class that has them
/// elsewhere, in a file for instance, overrides attributes().
///
/// Ownership: owns the attributes. Threads: const operations may run concurrently.
class AttributeList : public HasAttributes {
 public:
  std::vector<Attribute> attributes() const override;

  /// Gives the attribute `name` a value: `setAttribute("standard_name", "air_temperature")`,
  /// `setAttribute("valid_range", std::vector<double>{0, 1})`. One that is there keeps its place,
  /// another one comes last. Out of memory, nothing is changed.
  void setAttribute(std::string name, AttributeValue value);

  /// Has these attributes in place of all that it had. Their names differ.
  void setAttributes(std::vector<Attribute> attributes);

  /// Takes the attribute away. Returns whether there was one called `name`.
  bool removeAttribute(const std::string& name);

 protected:
  /// Without attributes.
  AttributeList();
  /// Copies the attributes.
  AttributeList(const AttributeList& other);
  /// Takes over the attributes; `other` has none then.
  AttributeList(AttributeList&& other) noexcept;
  /// Has copies of the other attributes in place of its own. Out of memory, nothing is changed.
  AttributeList& operator=(const AttributeList& other);
  /// Takes over the other attributes in place of its own.
  AttributeList& operator=(AttributeList&& other) noexcept;
  ~AttributeList();

 private:
  std::unique_ptr<std::vector<Attribute>> m_attributes;  // most objects have none
};

}  // namespace quillon::memory
