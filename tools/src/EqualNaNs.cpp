#include "EqualNaNs.h"

#include <object_model/Array.h>
#include <object_model/Tuple.h>

#include <cmath>
#include <memory>
#include <set>
#include <string>

#include "Axes.h"

namespace quillon::tools {

namespace {

using object_model::Array;
using object_model::Data;
using object_model::ElementType;
using object_model::Tuple;

/// Shows an array as it is, but for its NaN; see withEqualNaNs.
class ArrayWithEqualNaNs final : public Array {
 public:
  /// `peer` may be null.
  ArrayWithEqualNaNs(const Array& array, const Array* peer) : m_array(array), m_peer(peer) {}

  const object_model::DataInfo* getInformation() const override { return m_array.getInformation(); }
  const Data* parent() const override { return m_parent; }
  Data* parent() override { return m_parent; }
  void setParent(Data* parent) override { m_parent = parent; }

  double getValueAsDouble(const Tuple& index) const override {
    const double value = m_array.getValueAsDouble(index);
    const bool isMissingInBoth =
        std::isnan(value) && m_peer != nullptr && std::isnan(m_peer->getValueAsDouble(index));
    return isMissingInBoth ? 0.0 : value;
  }
  unsigned long getValueAsUInt(const Tuple& index) const override {
    return m_array.getValueAsUInt(index);
  }
  long getValueAsInt(const Tuple& index) const override { return m_array.getValueAsInt(index); }
  std::string getValueAsString(const Tuple& index) const override {
    return m_array.getValueAsString(index);
  }

  const Tuple& size() const override { return m_array.size(); }
  std::string getPhysicalUnit() const override { return m_array.getPhysicalUnit(); }
  std::string getUnit() const override { return m_array.getUnit(); }
  object_model::WritingInterface* getWritingInterface() override { return nullptr; }
  const object_model::WritingInterface* getWritingInterface() const override { return nullptr; }

 private:
  const Array& m_array;
  const Array* m_peer;
  Data* m_parent = nullptr;
};

std::set<std::string> namesIn(const object_model::Dictionary& group) {
  std::set<std::string> names;
  for (int i = 0; static_cast<unsigned long>(i) < group.getNumOfData(); ++i) {
    names.insert(group.getDataName(i));
  }
  return names;
}

/// The entry of the peer as an array in which NaN can stand beside those of `array`; null for none.
const Array* peerOf(const Array& array, const Data* entry) {
  const Array* peer = entry == nullptr ? nullptr : entry->asArray();
  const bool isComparable = peer != nullptr && array.getElementType() == ElementType::Double &&
                            peer->getElementType() == ElementType::Double &&
                            haveSameShape(array, *peer);
  return isComparable ? peer : nullptr;
}

}  // namespace

memory::Dictionary withEqualNaNs(const object_model::Dictionary& group,
                                 const object_model::Dictionary& peer) {
  const memory::Dictionary nothing("nothing");
  const std::set<std::string> peerNames = namesIn(peer);
  memory::Dictionary view(group.getName());
  for (int i = 0; static_cast<unsigned long>(i) < group.getNumOfData(); ++i) {
    const std::string name = group.getDataName(i);
    const Data& entry = *group.data(name);
    const Data* peerEntry = peerNames.count(name) == 0 ? nullptr : peer.data(name);
    if (entry.isArray()) {
      const Array& array = *entry.asArray();
      view.add(std::make_unique<ArrayWithEqualNaNs>(array, peerOf(array, peerEntry)));
      continue;
    }
    const bool hasPeer = peerEntry != nullptr && peerEntry->isDictionary();
    view.add(withEqualNaNs(*entry.asDictionary(), hasPeer ? *peerEntry->asDictionary() : nothing));
  }
  return view;
}

}  // namespace quillon::tools
