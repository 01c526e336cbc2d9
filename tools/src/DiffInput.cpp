#include "DiffInput.h"

#include <quillon/memory/ArrayBase.h>
#include <quillon/memory/Entries.h>
#include <quillon/memory/Paths.h>
#include <quillon/memory/Wording.h>
#include <quillon/netcdf/Decoded.h>

#include <stdexcept>
#include <utility>

#include "Opening.h"

namespace quillon::tools {

using memory::inQuotes;
using memory::pathOf;

namespace {

/// Numbers are read past the windows; those of texts must fit in memory side by side.
constexpr std::size_t WINDOW_BYTES = std::size_t{1} << 20U;

netcdf::OpenOptions inSmallWindows(netcdf::OpenOptions options) {
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

DiffInput::DiffInput(const FileGroup& input, netcdf::OpenOptions reading)
    : m_fileGroup(input),
      m_file(openFile(input.file, inSmallWindows(std::move(reading)))),
      m_group(groupOf(m_file, m_fileGroup)) {}

std::string DiffInput::pathOfGroup() const { return pathOf(m_group); }

std::vector<std::string> DiffInput::unreadable() const {
  const std::string start = pathOf(m_group, {});
  std::vector<std::string> paths;
  for (const netcdf::Skipped& variable : m_file.skipped()) {
    if (variable.path.rfind(start, 0) == 0) {
      paths.push_back(variable.path.substr(start.size()));
    }
  }
  return paths;
}

void DiffInput::select(const std::vector<std::string>& parts,
                       const std::set<std::string>& variables) {
  m_selection = std::make_unique<memory::Selection>(m_group, parts);
  m_chosen = variables;
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
        (!m_selection || m_chosen.count(variable.path.substr(start.size())) != 0)) {
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

bool isDecoded(const object_model::Array& array) { return netcdf::isDecoded(array); }

void chooseIn(DiffInput& first, DiffInput& second, compare::Choice choice) {
  const std::string& group = first.fileGroup().group;
  const std::string files =
      "either " + inQuotes(first.fileGroup().file) + " nor " + inQuotes(second.fileGroup().file);
  choice.sides = group.empty() ? "N" + files : "In the group " + inQuotes(group) + " n" + files;
  choice.root = first.pathOfGroup();
  choice.unreadable = first.unreadable();
  for (const std::string& path : second.unreadable()) {
    choice.unreadable.push_back(path);
  }
  const compare::Chosen chosen = compare::choose(first.part(), second.part(), choice);
  first.select(chosen.first, chosen.paths);
  second.select(chosen.second, chosen.paths);
}

}  // namespace quillon::tools
