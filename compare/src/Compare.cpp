#include <object_model/Array.h>
#include <object_model/Dictionary.h>
#include <object_model/Exception.h>
#include <object_model/TupleX.h>
#include <quillon/compare/Compare.h>

#include <exception>
#include <new>
#include <optional>
#include <unordered_set>
#include <utility>
#include <variant>

#include "Attributes.h"
#include "DeltaMap.h"
#include "Outline.h"
#include "PathRules.h"
#include "Places.h"
#include "ValuesComparison.h"

namespace quillon::compare {
namespace {

using object_model::Array;
using object_model::Data;
using object_model::Dictionary;
using object_model::ElementType;

/// Ends a comparison whose progress threw something; no array can have thrown it.
struct Stopped {};

/// Two dictionaries whose entries are being compared.
struct OpenEntries {
  const Dictionary& first;
  const Dictionary& second;
  std::size_t path;  ///< the length of theirs
  std::vector<std::string> firstNames = {};
  std::vector<std::string> secondNames = {};
  std::unordered_set<std::string> known = {};  ///< the second one's names
  std::unordered_set<std::string> done = {};   ///< the first one's names so far
  std::unordered_set<std::string> added = {};  ///< the second one's names that were reported
  std::size_t next = 0;                        ///< in the first one's names, then the second one's
};

/// Two arrays of dictionaries whose elements are being compared.
struct OpenElements {
  const Array& first;
  const Array& second;
  std::size_t path;
  unsigned long count;
  unsigned long next = 0;
};

using Open = std::variant<OpenEntries, OpenElements>;

std::vector<std::string> namesOf(const Dictionary& dictionary) {
  std::vector<std::string> names;
  for (unsigned long k = 0; k < dictionary.getNumOfData(); ++k) {
    names.push_back(dictionary.getDataName(static_cast<int>(k)));
  }
  return names;
}

unsigned long countOf(const object_model::Tuple& shape) {
  unsigned long count = 1;
  for (unsigned long k = 0; k < shape.size(); ++k) {
    count *= shape[k];
  }
  return count;
}

object_model::TupleX positionOf(unsigned long offset, const object_model::Tuple& shape) {
  object_model::TupleX position(shape.size());
  for (unsigned long k = 0; k < shape.size(); ++k) {
    position[k] = offset % shape[k];
    offset /= shape[k];
  }
  return position;
}

/// "[1,3]", the slowest dimension first.
std::string inBrackets(const object_model::Tuple& position) {
  std::string text = "[";
  for (unsigned long k = position.size(); k > 0; --k) {
    text += std::to_string(position[k - 1]) + (k > 1 ? "," : "");
  }
  return text + "]";
}

/// One walk through two objects. What is open stands on a stack of its own, so that nesting costs
/// memory, not stack.
class Walk {
 public:
  Walk(const Data& first, const Data& second, const Options& options)
      : m_options(options),
        m_rules(options, first, second),
        m_path(options.root == "/" ? std::string() : options.root) {
    m_report.tolerance = options.tolerance;
    m_report.nanEqual = options.nanEqual;
    if (options.progress) {
      m_progress = [this](unsigned long values) { tell(values); };
    }
  }

  Report run(const Data& first, const Data& second) {
    try {
      guarded([&] { compareObjects(&first, &second); });
      while (!m_open.empty()) {
        step();
      }
    } catch (const Stopped&) {
      std::rethrow_exception(m_thrown);
    }
    m_report.same = m_report.rows.empty() && m_report.notCompared.empty();
    return std::move(m_report);
  }

 private:
  void tell(unsigned long values) {
    try {
      m_options.progress(values);
    } catch (...) {
      m_thrown = std::current_exception();
      throw Stopped();
    }
  }

  /// The path of what is being compared; of an entry of the root, "/NAME".
  std::string path() const { return m_path.empty() ? "/" : m_path; }

  void add(Reason reason, Value first, Value second) {
    add(path(), reason, std::move(first), std::move(second));
  }

  void add(std::string path, Reason reason, Value first, Value second) {
    constexpr double NONE = std::numeric_limits<double>::quiet_NaN();
    m_report.rows.push_back({std::move(path),
                             reason,
                             0,
                             0,
                             0,
                             {},
                             NONE,
                             NONE,
                             std::move(first),
                             std::move(second),
                             {}});
  }

  void addNotCompared(const std::string& reason) {
    m_report.notCompared.push_back({path(), reason});
  }

  /// Lists the entry as not compared where the objects fail.
  template <class Compare>
  void guarded(const Compare& compareEntry) {
    try {
      compareEntry();
    } catch (const object_model::Exception& error) {
      addNotCompared(error.what());
    } catch (const std::bad_alloc&) {
      addNotCompared("there is not enough memory");
    } catch (const std::exception& error) {
      addNotCompared(error.what());
    }
  }

  /// Compares the next entry or element of what was opened last, or closes it.
  void step() {
    const bool isDone =
        std::visit([this](auto& open) { return !compareNext(open); }, m_open.back());
    if (isDone) {
      m_open.pop_back();
    }
  }

  /// @return false where nothing is left. `open` may have moved after true.
  bool compareNext(OpenEntries& open) {
    m_path.resize(open.path);
    const std::size_t position = open.next++;
    if (position < open.firstNames.size()) {
      const std::string name = open.firstNames[position];
      m_path += "/" + name;
      compareEntry(open, name);
      return true;
    }
    const std::size_t rest = position - open.firstNames.size();
    if (rest < open.secondNames.size()) {
      const std::string name = open.secondNames[rest];
      m_path += "/" + name;
      addIfLone(open, name);
      return true;
    }
    return false;
  }

  void compareEntry(OpenEntries& open, const std::string& name) {
    if (m_rules.isIgnored(path())) {
      return;
    }
    if (!open.done.insert(name).second) {
      addNotCompared("the first has several entries of this name");
      return;
    }
    const Dictionary& first = open.first;
    const Dictionary& second = open.second;
    const bool isShared = open.known.count(name) != 0;
    guarded([&] {
      const Data* const entry = first.data(name);
      if (!isShared) {
        add(Reason::OnlyInFirst, kindOf(entry), {});
      } else {
        compareObjects(entry, second.data(name));
      }
    });
  }

  void addIfLone(OpenEntries& open, const std::string& name) {
    if (m_rules.isIgnored(path())) {
      return;
    }
    if (!open.added.insert(name).second) {
      addNotCompared("the second has several entries of this name");
    } else if (open.done.count(name) == 0) {
      guarded([&] { add(Reason::OnlyInSecond, {}, kindOf(open.second.data(name))); });
    }
  }

  bool compareNext(OpenElements& open) {
    m_path.resize(open.path);
    if (open.next == open.count) {
      return false;
    }
    const object_model::TupleX position = positionOf(open.next++, open.first.size());
    m_path += (m_path.empty() ? "/" : "") + inBrackets(position);
    const Array& first = open.first;
    const Array& second = open.second;
    if (!m_rules.isIgnored(path())) {
      guarded([&] {
        compareObjects(first.getValueAsDictionary(position), second.getValueAsDictionary(position));
      });
    }
    return true;
  }

  static Value kindOf(const Data* data) {
    if (data == nullptr) {
      return {};
    }
    return std::string(data->asDictionary() != nullptr ? "dictionary"
                       : data->asArray() != nullptr    ? "array"
                                                       : "neither array nor dictionary");
  }

  void compareObjects(const Data* first, const Data* second) {
    if (first == nullptr || second == nullptr) {
      addNotCompared(first == second
                         ? "neither side has an object there"
                         : std::string("the ") + (first == nullptr ? "first" : "second") +
                               " has no object there");
      return;
    }
    if (first->asDictionary() != nullptr && second->asDictionary() != nullptr) {
      compareDictionaries(*first->asDictionary(), *second->asDictionary());
    } else if (first->asArray() != nullptr && second->asArray() != nullptr) {
      compareArrays(*first->asArray(), *second->asArray());
    } else if (kindOf(first) != kindOf(second)) {
      add(Reason::Kind, kindOf(first), kindOf(second));
    } else {
      addNotCompared("it is neither an array nor a dictionary");
    }
  }

  void compareDictionaries(const Dictionary& first, const Dictionary& second) {
    compareAttributes(first, second);
    OpenEntries open{first, second, m_path.size()};
    open.firstNames = namesOf(first);
    open.secondNames = namesOf(second);
    open.known.insert(open.secondNames.begin(), open.secondNames.end());
    m_open.emplace_back(std::move(open));
  }

  void compareAttributes(const Data& first, const Data& second) {
    if (!m_options.attributes) {
      return;
    }
    for (AttributeDifference& some : attributeDifferences(first, second)) {
      if (!m_rules.isIgnored(path(), some.name)) {
        add(path() + "@" + some.name, Reason::Attribute, std::move(some.first),
            std::move(some.second));
      }
    }
  }

  void compareArrays(const Array& first, const Array& second) {
    for (OutlineDifference& some : outlineDifferences(first, second, m_options)) {
      add(some.reason, std::move(some.first), std::move(some.second));
    }
    compareAttributes(first, second);
    if (memory::haveSameShape(first, second)) {
      compareElements(first, second);
    }
  }

  void compareElements(const Array& first, const Array& second) {
    const ElementType left = first.getElementType();
    const ElementType right = second.getElementType();
    if (left == ElementType::Dictionary && right == left) {
      m_open.emplace_back(OpenElements{first, second, m_path.size(), countOf(first.size())});
    } else if (areComparable(left, right)) {
      compareValues(first, second);
    } else if (left == right) {
      addNotCompared("its elements are of " + memory::nameOf(left));
    }
  }

  void compareValues(const Array& first, const Array& second) {
    if (areTimesOfDifferentUnits(first, second)) {
      return;
    }
    const Tolerance& tolerance = m_rules.toleranceFor(path());
    if (const std::optional<FiguresInParts> known = knownFigures(tolerance)) {
      addFigures(known->figures, first, second);
      for (const std::string& reason : known->notCompared) {
        addNotCompared(reason);
      }
      return;
    }
    const Rule rule{tolerance.absolute, tolerance.relative, m_options.nanEqual};
    std::optional<DeltaMap> map;
    if (m_options.pictures) {
      map.emplace(first.size());
    }
    const bool isDrawn = map && map->isDrawn();
    const Figures figures =
        figuresOf(first, second, {rule, m_options.largest, m_progress, isDrawn ? &*map : nullptr},
                  wholeGrid(first.size()));
    addFigures(figures, first, second, isDrawn ? &*map : nullptr);
  }

  /// @param map where the values differ; null where no picture is drawn.
  void addFigures(const Figures& figures, const Array& first, const Array& second,
                  const DeltaMap* map = nullptr) {
    m_report.values += figures.values;
    if (figures.count > 0) {
      const Places places(first, second);
      m_report.rows.push_back(differenceAt(path(), figures, places));
      if (map != nullptr) {
        m_report.rows.back().picture = map->picture(places.names());
      }
    }
  }

  /// What is known of the arrays at path() without reading their values.
  std::optional<FiguresInParts> knownFigures(const Tolerance& tolerance) {
    if (!m_options.figures) {
      return {};
    }
    try {
      return m_options.figures(path(), tolerance);
    } catch (...) {
      m_thrown = std::current_exception();
      throw Stopped();
    }
  }

  const Options& m_options;
  PathRules m_rules;
  std::function<void(unsigned long)> m_progress;
  std::exception_ptr m_thrown;
  std::string m_path;  // empty for "/"
  std::vector<Open> m_open;
  Report m_report;
};

}  // namespace

Report compare(const Data& first, const Data& second, const Options& options) {
  return Walk(first, second, options).run(first, second);
}

}  // namespace quillon::compare
