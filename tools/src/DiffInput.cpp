#include "DiffInput.h"

#include <quillon/memory/ArrayBase.h>
#include <quillon/memory/Entries.h>
#include <quillon/memory/Paths.h>
#include <quillon/memory/Wording.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "Failure.h"
#include "Opening.h"

namespace quillon::tools {

using memory::inQuotes;
using memory::listed;
using memory::pathOf;

namespace {

/// Numbers are read past the windows; those of texts must fit in memory side by side.
constexpr std::size_t WINDOW_BYTES = std::size_t{1} << 20U;

netcdf::OpenOptions reading() {
  netcdf::OpenOptions options;
  options.windowBytes = WINDOW_BYTES;
  return options;
}

/// Stands for a variable that cannot be read.
class UnreadableArray final : public memory::ArrayBase {
 public:
  UnreadableArray(std::string name, std::string reason)
      : ArrayBase(std::move(name), object_model::ElementType::Double, {}),
        m_reason(std::move(reason)) {}

  const object_model::Tuple& size() const override { throw std::runtime_error(m_reason); }

 private:
  std::string m_reason;
};

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

unsigned long valuesIn(const object_model::Data& data) {
  unsigned long values = 0;
  if (const object_model::Dictionary* group = data.asDictionary()) {
    for (const auto& [name, entry] : memory::entriesOf(*group)) {
      values += valuesIn(*entry);
    }
  } else if (const auto* array = dynamic_cast<const memory::ArrayBase*>(&data)) {
    values = array->numberOfElements();
  }
  return values;
}

}  // namespace

DiffInput::DiffInput(const Source& source)
    : m_source(source),
      m_file(openFile(source.file, reading())),
      m_group(groupOf(m_file, m_source)) {}

std::string DiffInput::pathOfGroup() const { return pathOf(m_group); }

std::vector<std::string> DiffInput::variables() const {
  std::vector<std::string> names;
  for (const auto& [name, entry] : memory::entriesOf(m_group)) {
    if (!entry->isDictionary()) {
      names.push_back(name);
    }
  }
  for (const PassedOver& variable : skippedIn(m_group, m_file.skipped())) {
    names.push_back(variable.name);
  }
  return names;
}

void DiffInput::select(const std::vector<std::string>& names) {
  std::vector<std::string> present;
  std::copy_if(names.begin(), names.end(), std::back_inserter(present),
               [this](const std::string& name) { return m_group.contains(name); });
  m_selection = std::make_unique<memory::Selection>(m_group, present);
  m_names = names;
}

const object_model::Dictionary& DiffInput::part() const {
  if (m_selection) {
    return *m_selection;
  }
  return m_group;
}

unsigned long DiffInput::values() const { return valuesIn(part()); }

std::vector<netcdf::Skipped> DiffInput::skipped() const {
  const std::string start = pathOf(m_group, {});
  std::vector<netcdf::Skipped> result;
  for (const netcdf::Skipped& variable : m_file.skipped()) {
    if (variable.path.rfind(start, 0) == 0 &&
        (!m_selection || contains(m_names, variable.path.substr(start.size())))) {
      result.push_back(variable);
    }
  }
  return result;
}

void DiffInput::addSkipped() {
  for (const netcdf::Skipped& variable : m_file.skipped()) {
    const std::size_t slash = variable.path.rfind('/');
    m_file.group(variable.path.substr(0, slash))
        .add(std::make_unique<UnreadableArray>(variable.path.substr(slash + 1), variable.reason));
  }
}

void requireVariables(const DiffInput& first, const DiffInput& second,
                      const std::vector<std::string>& names) {
  const std::vector<std::string> known = unionOf(first, second);
  std::vector<std::string> unknown;
  std::copy_if(names.begin(), names.end(), std::back_inserter(unknown),
               [&known](const std::string& name) { return !contains(known, name); });
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
