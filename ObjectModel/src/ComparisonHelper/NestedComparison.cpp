#include "ComparisonHelper/NestedComparison.h"

#include <object_model/Array.h>
#include <object_model/Dictionary.h>

#include <memory>
#include <utility>
#include <vector>

#include "ComparisonHelper/CheckedView.h"
#include "ComparisonHelper/ElementComparison.h"
#include "ComparisonHelper/Explanation.h"
#include "ComparisonHelper/NameOf.h"
#include "ComparisonHelper/Positions.h"

namespace object_model::helper {
namespace {

/// What all levels of one comparison share.
struct Shared {
  Criterion criterion;
  CheckedView<Array> asArray = {};
  CheckedView<Dictionary> asDictionary = {};
};

/// One of the comparisons that are under way, each inside the one before. A level is left for the
/// next inner one and taken up again, instead of calling it, so that the depth costs no stack.
class Level {
 public:
  /// `explains` tells whether somebody wants to know what differs.
  Level(Shared& shared, bool explains) : m_shared(shared), m_explains(explains) {}
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;
  virtual ~Level() = default;

  /// Compares on until two nested dictionaries or arrays of dictionaries have to be compared first,
  /// and returns that comparison; null at the end.
  virtual std::unique_ptr<Level> next() = 0;

  /// Takes note that the comparison that next() returned last found a difference.
  virtual void noteDifference(Explanation&& nested) = 0;

  bool same() const { return m_same; }

  /// Why it is not the same. To be called once.
  virtual Explanation explain() { return std::move(m_explanation); }

 protected:
  Shared& shared() { return m_shared; }
  bool explains() const { return m_explains; }
  void setDifference(Explanation&& explanation) {
    m_same = false;
    m_explanation = std::move(explanation);
  }

 private:
  Shared& m_shared;
  bool m_explains;
  bool m_same = true;
  Explanation m_explanation;
};

/// The comparison of two dictionaries: ends at the first difference.
class DictionaryLevel final : public Level {
 public:
  DictionaryLevel(const Dictionary& first, const Dictionary& second, Shared& shared, bool explains)
      : Level(shared, explains), m_first(first), m_second(second) {}

  std::unique_ptr<Level> next() override;
  void noteDifference(Explanation&& nested) override;

 private:
  void checkOutline();
  std::unique_ptr<Level> compareNextEntry();
  std::unique_ptr<Level> compareArrays(const Array& first, const Array& second);

  const Dictionary& m_first;
  const Dictionary& m_second;
  bool m_outlineChecked = false;
  int m_count = 0;
  int m_next = 0;
  // Of the entry before m_next; here, so that their memory serves all entries.
  std::string m_entryName;
  std::string m_arrayName;
  bool m_entryIsDictionary = false;
};

/// The comparison of two arrays of dictionaries: goes on after a difference.
class DictionaryElementsLevel final : public Level {
 public:
  DictionaryElementsLevel(const ArrayPair& pair, Shared& shared, bool explains)
      : Level(shared, explains),
        m_pair(pair),
        m_positions(m_pair.shape),
        m_done(m_positions.none()) {}

  std::unique_ptr<Level> next() override;
  void noteDifference(Explanation&& nested) override;
  Explanation explain() override;

 private:
  ArrayPair m_pair;
  Positions m_positions;
  bool m_started = false;
  bool m_done;
  Positions::Indices m_lastDifference = {};
};

std::unique_ptr<Level> DictionaryLevel::next() {
  if (!m_outlineChecked) {
    checkOutline();
  }
  std::unique_ptr<Level> nested;
  while (nested == nullptr && same() && m_next < m_count) {
    nested = compareNextEntry();
  }
  return nested;
}

void DictionaryLevel::checkOutline() {
  m_outlineChecked = true;
  std::string difference;
  if (!areSimilarDictionaries(m_first, m_second, explains() ? &difference : nullptr)) {
    setDifference(Explanation(std::move(difference)));
    return;
  }
  m_count = static_cast<int>(m_first.getNumOfData());
}

std::unique_ptr<Level> DictionaryLevel::compareNextEntry() {
  const Data& entry = entryAt(m_first, m_next);
  ++m_next;
  m_entryName = nameOf(entry);
  const Data* match = m_second.data(m_entryName);
  m_entryIsDictionary = entry.isDictionary();
  if (m_entryIsDictionary) {
    return std::make_unique<DictionaryLevel>(shared().asDictionary.of(&entry),
                                             shared().asDictionary.of(match), shared(), true);
  }
  return compareArrays(shared().asArray.of(&entry), shared().asArray.of(match));
}

std::unique_ptr<Level> DictionaryLevel::compareArrays(const Array& first, const Array& second) {
  std::string difference;
  const auto pair = pairUp(first, second, m_arrayName, &difference);
  if (pair && pair->elementType == ElementType::Dictionary) {
    return std::make_unique<DictionaryElementsLevel>(*pair, shared(), true);
  }
  if (!pair || !areSameElements(*pair, shared().criterion, &difference)) {
    noteDifference(Explanation(std::move(difference)));
  }
  return nullptr;
}

void DictionaryLevel::noteDifference(Explanation&& nested) {
  if (!m_entryIsDictionary) {
    nested.precede(sentenceOf("Array '", m_entryName, "': "));
  } else if (explains()) {
    // Deliberately the name of the containing dictionary, not of the entry.
    nested.precede(sentenceOf("Dictionary '", m_first.getName(), "': "));
  }
  setDifference(std::move(nested));
}

std::unique_ptr<Level> DictionaryElementsLevel::next() {
  m_done = m_done || (m_started && !m_positions.next());
  if (m_done) {
    return nullptr;
  }
  m_started = true;
  // Deliberately the second array first, unlike elements of the other types.
  const Data* second = m_pair.second.getValueAsDictionary(m_positions.current());
  const Data* first = m_pair.first.getValueAsDictionary(m_positions.current());
  return std::make_unique<DictionaryLevel>(shared().asDictionary.of(first),
                                           shared().asDictionary.of(second), shared(), explains());
}

void DictionaryElementsLevel::noteDifference(Explanation&& nested) {
  m_lastDifference = m_positions.indices();
  setDifference(std::move(nested));
}

Explanation DictionaryElementsLevel::explain() {
  Explanation explanation = Level::explain();
  // The unmatched quote and the missing blank behind the position are deliberate.
  explanation.precede(sentenceOf("The arrays '", m_pair.name,
                                 "' have different dictionaries at the position ",
                                 m_positions.at(m_lastDifference), "':"));
  return explanation;
}

void run(Level& outermost) {
  std::vector<std::unique_ptr<Level>> inner;
  const auto current = [&]() -> Level& { return inner.empty() ? outermost : *inner.back(); };
  for (;;) {
    if (auto nested = current().next()) {
      inner.push_back(std::move(nested));
      continue;
    }
    if (inner.empty()) {
      return;
    }
    const std::unique_ptr<Level> done = std::move(inner.back());
    inner.pop_back();
    if (!done->same()) {
      current().noteDifference(done->explain());
    }
  }
}

void report(Level& outermost, std::string* message) {
  if (!outermost.same() && message != nullptr) {
    *message = outermost.explain().text();
  }
}

}  // namespace

const Data& entryAt(const Dictionary& dictionary, int index) {
  return viewAs<Data>(dictionary.data(index));
}

bool areSameNested(const Dictionary& first, const Dictionary& second, const Criterion& criterion,
                   std::string* message) {
  Shared shared = {criterion};
  DictionaryLevel outermost(first, second, shared, message != nullptr);
  run(outermost);
  report(outermost, message);
  return outermost.same();
}

bool areSameNested(const ArrayPair& pair, const Criterion& criterion, std::string* message) {
  Shared shared = {criterion};
  DictionaryElementsLevel outermost(pair, shared, message != nullptr);
  runThenReport([&] { run(outermost); }, [&] { report(outermost, message); });
  return outermost.same();
}

}  // namespace object_model::helper
