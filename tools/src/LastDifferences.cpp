#include "LastDifferences.h"

#include <object_model/Array.h>
#include <object_model/Tuple.h>
#include <object_model/TupleX.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "DiffLines.h"

namespace quillon::tools {

namespace {

using object_model::Array;
using object_model::Data;
using object_model::Dictionary;
using object_model::Tuple;
using object_model::TupleX;

/// The shape of both views of a pair, which ends at the last difference.
class Outline {
 public:
  Outline(const Array& first, const Array& second, CountedPairs& counted)
      : m_first(first), m_second(second), m_counted(counted) {}

  const Tuple& shape() {
    if (!m_shape) {
      m_shape = shapeOf(m_counted.of(m_first, m_second));
    }
    return *m_shape;
  }

 private:
  static std::unique_ptr<TupleX> shapeOf(const DiffFigures& figures) {
    if (figures.visited == 0) {
      // Of one dimension whatever the arrays have: of some shapes without values the library reads
      // a value nevertheless.
      return std::make_unique<TupleX>(1);
    }
    const std::vector<unsigned long>& last = figures.lastVisited;
    auto shape = std::make_unique<TupleX>(last.size());
    for (std::size_t k = 0; k < last.size(); ++k) {
      (*shape)[k] = last[k] + 1;
    }
    return shape;
  }

  const Array& m_first;
  const Array& m_second;
  CountedPairs& m_counted;
  std::unique_ptr<TupleX> m_shape;
};

/// Shows an array up to its last difference; `outline` is null where there is nothing to compare
/// its values with.
class LastDifference final : public Array {
 public:
  LastDifference(const Array& array, std::shared_ptr<Outline> outline)
      : m_array(array), m_outline(std::move(outline)) {}

  const object_model::DataInfo* getInformation() const override { return m_array.getInformation(); }
  const Data* parent() const override { return m_parent; }
  Data* parent() override { return m_parent; }
  void setParent(Data* parent) override { m_parent = parent; }

  double getValueAsDouble(const Tuple& index) const override {
    return isLast(index) ? m_array.getValueAsDouble(index) : 0.0;
  }
  unsigned long getValueAsUInt(const Tuple& index) const override {
    return isLast(index) ? m_array.getValueAsUInt(index) : 0;
  }
  long getValueAsInt(const Tuple& index) const override {
    return isLast(index) ? m_array.getValueAsInt(index) : 0;
  }
  std::string getValueAsString(const Tuple& index) const override {
    return isLast(index) ? m_array.getValueAsString(index) : std::string();
  }

  const Tuple& size() const override { return m_outline ? m_outline->shape() : m_array.size(); }
  std::string getPhysicalUnit() const override { return m_array.getPhysicalUnit(); }
  std::string getUnit() const override { return m_array.getUnit(); }
  object_model::WritingInterface* getWritingInterface() override { return nullptr; }
  const object_model::WritingInterface* getWritingInterface() const override { return nullptr; }

 private:
  bool isLast(const Tuple& index) const {
    const Tuple& shape = size();
    for (unsigned long k = 0; k < shape.size(); ++k) {
      if (index[k] + 1 != shape[k]) {
        return false;
      }
    }
    return true;
  }

  const Array& m_array;
  std::shared_ptr<Outline> m_outline;
  Data* m_parent = nullptr;
};

/// The entry of `group` with this name; null for none.
const Data* find(const Dictionary& group, const std::set<std::string>& names,
                 const std::string& name) {
  return names.count(name) == 0 ? nullptr : group.data(name);
}

std::set<std::string> namesIn(const Dictionary& group) {
  std::set<std::string> names;
  for (int i = 0; static_cast<unsigned long>(i) < group.getNumOfData(); ++i) {
    names.insert(group.getDataName(i));
  }
  return names;
}

const Array* asArray(const Data* entry) { return entry == nullptr ? nullptr : entry->asArray(); }

const Dictionary* asGroup(const Data* entry) {
  return entry == nullptr ? nullptr : entry->asDictionary();
}

using Outlines = std::map<const Array*, std::shared_ptr<Outline>>;

/// The outlines of the pairs in two groups and those below, by either of their arrays.
void addOutlines(const Dictionary& first, const Dictionary& second, CountedPairs& counted,
                 Outlines& outlines) {
  const std::set<std::string> names = namesIn(second);
  for (const std::string& name : namesIn(first)) {
    const Data* a = first.data(name);
    const Data* b = find(second, names, name);
    if (asArray(a) != nullptr && asArray(b) != nullptr &&
        outlineInWords(*asArray(a), *asArray(b)).empty()) {
      const auto outline = std::make_shared<Outline>(*asArray(a), *asArray(b), counted);
      outlines.emplace(asArray(a), outline);
      outlines.emplace(asArray(b), outline);
    } else if (asGroup(a) != nullptr && asGroup(b) != nullptr) {
      addOutlines(*asGroup(a), *asGroup(b), counted, outlines);
    }
  }
}

memory::Dictionary viewOf(const Dictionary& group, const Outlines& outlines) {
  memory::Dictionary view(group.getName());
  for (int i = 0; static_cast<unsigned long>(i) < group.getNumOfData(); ++i) {
    const Data& entry = *group.data(i);
    if (entry.isDictionary()) {
      view.add(viewOf(*entry.asDictionary(), outlines));
      continue;
    }
    const Array& array = *entry.asArray();
    const auto outline = outlines.find(&array);
    view.add(std::make_unique<LastDifference>(
        array, outline == outlines.end() ? nullptr : outline->second));
  }
  return view;
}

}  // namespace

LastDifferences lastDifferencesOf(const Dictionary& first, const Dictionary& second,
                                  CountedPairs& counted) {
  Outlines outlines;
  addOutlines(first, second, counted, outlines);
  return {viewOf(first, outlines), viewOf(second, outlines)};
}

}  // namespace quillon::tools
