#include "DiffReport.h"

#include <object_model/Array.h>
#include <object_model/Tuple.h>
#include <quillon/memory/Wording.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "DiffLines.h"
#include "Groups.h"

namespace quillon::tools {

using memory::escaped;
using memory::inQuotes;
using memory::pathOf;

namespace {

using object_model::Array;
using object_model::Data;
using object_model::Dictionary;

constexpr std::size_t MOST_LINES = 20;

/// A group of one side, with what is found in it by name.
class Level {
 public:
  Level(const Dictionary& group, const DiffSide& side) : m_group(group), m_side(side) {
    for (int i = 0; static_cast<unsigned long>(i) < group.getNumOfData(); ++i) {
      m_names.push_back(group.getDataName(i));
    }
    m_known.insert(m_names.begin(), m_names.end());
    for (const PassedOver& variable : skippedIn(group, side.skipped)) {
      m_skipped.emplace(variable.name, variable.reason);
    }
  }

  const std::vector<std::string>& names() const { return m_names; }
  const std::map<std::string, std::string>& skipped() const { return m_skipped; }
  bool has(const std::string& name) const { return m_known.count(name) != 0; }
  const Data& entry(const std::string& name) const { return *m_group.data(name); }
  std::string file() const { return inQuotes(m_side.file); }
  std::string pathOfEntry(const std::string& name) const { return escaped(pathOf(m_group, name)); }

 private:
  const Dictionary& m_group;
  const DiffSide& m_side;
  std::vector<std::string> m_names;
  std::set<std::string> m_known;
  std::map<std::string, std::string> m_skipped;
};

class Walk {
 public:
  Walk(const DiffSide& first, const DiffSide& second, DiffScope scope, CountedPairs& counted)
      : m_first(first), m_second(second), m_scope(scope), m_counted(counted) {}

  void compare(const Dictionary& first, const Dictionary& second) {
    const Level left(first, m_first);
    const Level right(second, m_second);
    for (const std::string& name : left.names()) {
      if (right.has(name)) {
        compareEntries(left, right, name);
      } else {
        reportLone(left, right, name);
      }
    }
    for (const std::string& name : right.names()) {
      if (!left.has(name)) {
        reportLone(right, left, name);
      }
    }
    reportLoneSkipped(left, right);
    reportLoneSkipped(right, left);
    for (const auto& [name, reason] : left.skipped()) {
      if (right.skipped().count(name) != 0) {
        m_report.leftOut.push_back(left.pathOfEntry(name) + " (" + escaped(reason) + ")");
      }
    }
  }

  DiffReport report() && { return std::move(m_report); }

 private:
  void compareEntries(const Level& left, const Level& right, const std::string& name) {
    const Data& a = left.entry(name);
    const Data& b = right.entry(name);
    if (a.isDictionary() != b.isDictionary()) {
      add(left.pathOfEntry(name),
          kindOf(a) + " in " + left.file() + ", " + kindOf(b) + " in " + right.file());
    } else if (a.isDictionary()) {
      compare(*a.asDictionary(), *b.asDictionary());
    } else {
      compareArrays(left.pathOfEntry(name), *a.asArray(), *b.asArray());
    }
  }

  void compareArrays(const std::string& path, const Array& first, const Array& second) {
    const std::string outline = outlineInWords(first, second);
    if (!outline.empty()) {
      add(path, outline);
    } else if (m_scope == DiffScope::All || first.size().size() >= PARTLY_COMPARED) {
      const DiffFigures& figures = m_counted.of(first, second);
      add(path, differenceInWords(first, figures, m_counted.rule()));
      const std::string passed = passedInWords(first, figures);
      if (!passed.empty()) {
        m_report.passed.push_back(path + ": " + passed);
      }
    }
  }

  void reportLone(const Level& owner, const Level& other, const std::string& name) {
    const auto skipped = other.skipped().find(name);
    add(owner.pathOfEntry(name),
        skipped == other.skipped().end()
            ? "only in " + owner.file()
            : "not comparable in " + other.file() + ": " + escaped(skipped->second));
  }

  /// Variables without an array; those that the other side has as an entry were reported there.
  void reportLoneSkipped(const Level& owner, const Level& other) {
    for (const auto& [name, reason] : owner.skipped()) {
      if (other.skipped().count(name) == 0 && !other.has(name)) {
        add(owner.pathOfEntry(name), "only in " + owner.file());
      }
    }
  }

  static std::string kindOf(const Data& entry) {
    return entry.isDictionary() ? "a group" : "an array";
  }

  void add(const std::string& path, const std::string& difference) {
    if (!difference.empty()) {
      m_report.differences.push_back(path + ": " + difference);
    }
  }

  const DiffSide& m_first;
  const DiffSide& m_second;
  DiffScope m_scope;
  CountedPairs& m_counted;
  DiffReport m_report;
};

}  // namespace

DiffReport reportOn(const DiffSide& first, const DiffSide& second, DiffScope scope,
                    CountedPairs& counted) {
  Walk walk(first, second, scope, counted);
  walk.compare(first.group, second.group);
  return std::move(walk).report();
}

std::string textOf(const std::vector<std::string>& lines) {
  std::string text;
  const std::size_t shown = std::min(lines.size(), MOST_LINES);
  for (std::size_t i = 0; i < shown; ++i) {
    text += lines[i] + "\n";
  }
  if (shown < lines.size()) {
    text += "... and " + std::to_string(lines.size() - shown) + " more\n";
  }
  return text;
}

}  // namespace quillon::tools
