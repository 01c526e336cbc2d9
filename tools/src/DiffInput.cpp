#include "DiffInput.h"

#include <quillon/memory/Wording.h>

#include <algorithm>
#include <utility>

#include "Failure.h"
#include "Groups.h"
#include "Opening.h"

namespace quillon::tools {

using memory::inQuotes;
using memory::listed;
using memory::pathOf;

namespace {

/// Every array whose accessors are used keeps its window, so that those of many arrays must fit in
/// memory side by side.
constexpr std::size_t WINDOW_BYTES = std::size_t{1} << 20U;

netcdf::OpenOptions reading() {
  netcdf::OpenOptions options;
  options.windowBytes = WINDOW_BYTES;
  return options;
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// The variables that either has, each once.
std::vector<std::string> unionOf(const DiffInput& first, const DiffInput& second) {
  std::vector<std::string> names = first.variables();
  for (const std::string& name : second.variables()) {
    if (!contains(names, name)) {
      names.push_back(name);
    }
  }
  return names;
}

void requireComparable(const DiffInput& input, const std::string& name) {
  const std::string reason = input.reasonWithout(name);
  if (!reason.empty()) {
    throw Failure(inQuotes(name) + " of " + inQuotes(input.source().file) +
                  " cannot be compared: " + reason);
  }
}

}  // namespace

DiffInput::DiffInput(const std::string& path, const std::string& group)
    : m_source{path, group},
      m_file(openFile(path, reading())),
      m_group(groupOf(m_file, m_source)),
      m_skipped(m_file.skipped()) {}

const Source& DiffInput::source() const { return m_source; }

std::vector<std::string> DiffInput::variables() const {
  std::vector<std::string> names;
  for (int i = 0; static_cast<unsigned long>(i) < m_group.getNumOfData(); ++i) {
    std::string name = m_group.getDataName(i);
    if (!std::as_const(m_group).data(name)->isDictionary()) {
      names.push_back(std::move(name));
    }
  }
  return names;
}

std::string DiffInput::reasonWithout(const std::string& name) const {
  for (const PassedOver& variable : skippedIn(m_group, m_skipped)) {
    if (variable.name == name) {
      return variable.reason;
    }
  }
  return {};
}

void DiffInput::select(const std::vector<std::string>& names) {
  std::vector<std::string> present;
  std::vector<netcdf::Skipped> skipped;
  for (const std::string& name : names) {
    const std::string reason = reasonWithout(name);
    if (!reason.empty()) {
      skipped.push_back({pathOf(m_group, name), reason});
    }
    if (m_group.contains(name)) {
      present.push_back(name);
    }
  }
  m_selection = std::make_unique<memory::Selection>(m_group, present);
  m_skipped = skipped;
}

DiffSide DiffInput::side() const {
  if (m_selection) {
    return {*m_selection, m_source.file, m_skipped};
  }
  return {m_group, m_source.file, m_skipped};
}

void requireVariables(const DiffInput& first, const DiffInput& second,
                      const std::vector<std::string>& names) {
  const std::vector<std::string> known = unionOf(first, second);
  std::vector<std::string> unknown;
  for (const std::string& name : names) {
    if (!contains(known, name)) {
      requireComparable(first, name);
      requireComparable(second, name);
      unknown.push_back(name);
    }
  }
  if (unknown.empty()) {
    return;
  }
  const std::string& group = first.source().group;
  throw Failure("Neither " + inQuotes(first.source().file) + " nor " +
                inQuotes(second.source().file) + " has a variable " +
                (unknown.size() == 1 ? inQuotes(unknown.front()) : "called " + listed(unknown)) +
                (group.empty() ? std::string() : " in the group " + inQuotes(group)) +
                (known.empty() ? "; there are none" : "; there are " + listed(known)));
}

}  // namespace quillon::tools
