#include "TableHandle.h"

#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>

#include <algorithm>
#include <limits>
#include <type_traits>
#include <utility>

#include "Numpy.h"

namespace quillon::python {
namespace {

std::shared_ptr<SharedDictionary> arraysOf(const SharedDictionary& dictionary, bool asNumbers) {
  auto copy = std::make_shared<SharedDictionary>(dictionary.getName(), dictionary.getDescription());
  for (const std::string& name : dictionary.names()) {
    const Entry& entry = dictionary.at(name);
    if (entry.array != nullptr) {
      copy->set({asNumbers ? numbersOf(entry.array) : siblingOf(entry.array, name), nullptr, {}});
    }
  }
  return copy;
}

constexpr long EXACT = 1L << 53U;  // integers up to it are float64s

/// @throws tables::Error where no float64 is the same number.
template <class T>
double exactly(T number, const std::string& column) {
  if constexpr (sizeof(T) == sizeof(long) && std::is_integral_v<T>) {
    const bool isBelow = std::is_signed_v<T> && static_cast<long>(number) < -EXACT;
    if (isBelow || (number > 0 && static_cast<unsigned long>(number) > EXACT)) {
      throw tables::Error("The column " + memory::inQuotes(column) + " has missing values beside " +
                          std::to_string(number) + ", which no float64 holds");
    }
  }
  return static_cast<double>(number);
}

}  // namespace

Snapshot::Snapshot(const SharedDictionary& dictionary, bool asNumbers) {
  const object_model::Data* level = &dictionary;
  while (const auto* const known = dynamic_cast<const SharedDictionary*>(level)) {
    m_levels.push_back(arraysOf(*known, asNumbers));
    if (m_levels.size() > 1) {
      m_levels[m_levels.size() - 2]->setParent(m_levels.back().get());
    }
    level = known->parent();
  }
}

ConstArrayPointer Snapshot::find(const tables::ArraySource& source) const {
  ConstArrayPointer array = m_levels.at(source.levels)->at(source.variable).array;
  if (source.coordinatesOf) {
    return std::dynamic_pointer_cast<const memory::ArrayBase>(
        array->coordinates(*source.coordinatesOf));
  }
  return array;
}

TableHandle::TableHandle(const SharedDictionary& dictionary, const tables::Request& request)
    : m_snapshot(std::make_shared<const Snapshot>(dictionary, false)),
      m_plan(tables::plan(m_snapshot->dictionary(), request)),
      m_shown(makeTable(m_snapshot)) {
  const auto& columns = m_shown.columns();
  if (std::any_of(columns.begin(), columns.end(), [](const tables::Column& column) {
        return column.type == tables::ColumnType::Time;
      })) {
    m_numbers = makeTable(std::make_shared<const Snapshot>(dictionary, true));
  }
}

tables::Table TableHandle::makeTable(const std::shared_ptr<const Snapshot>& snapshot) const {
  return {std::shared_ptr<const object_model::Dictionary>(snapshot, &snapshot->dictionary()),
          m_plan};
}

bool TableHandle::isTime(unsigned long column) const {
  return m_shown.columns().at(column).type == tables::ColumnType::Time;
}

std::string TableHandle::spelledDtype(unsigned long column) const {
  if (m_snapshot == nullptr) {
    return isTime(column) ? "<M8[us]" : "";
  }
  const std::optional<tables::ArraySource>& source = m_plan.columns.at(column).source;
  const ConstArrayPointer array = source ? m_snapshot->find(*source) : nullptr;
  return array == nullptr ? std::string() : spelledDtypeOf(*array);
}

std::string TableHandle::unitOf(unsigned long column) const {
  const bool isNumber = isTime(column) && spelledDtype(column).empty();
  return (isNumber ? *m_numbers : m_shown).columns().at(column).unit;
}

py::array TableHandle::readNullable(unsigned long column, unsigned long first,
                                    unsigned long count) const {
  py::array_t<double> numbers(static_cast<py::ssize_t>(count));
  double* const destination = numbers.mutable_data();
  const py::gil_scoped_release released;
  const auto missing = std::make_unique<bool[]>(count);
  m_shown.readMissing(column, first, count, missing.get());
  const tables::Column& described = m_shown.columns()[column];
  tables::visitColumnType(described.type, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    if constexpr (!std::is_same_v<T, std::string>) {
      const auto cells = std::make_unique<T[]>(count);
      m_shown.read(column, first, count, cells.get());
      for (unsigned long k = 0; k < count; ++k) {
        destination[k] = missing[k] ? std::numeric_limits<double>::quiet_NaN()
                                    : exactly(cells[k], described.name);
      }
    }
  });
  return numbers;
}

py::array TableHandle::read(unsigned long column, unsigned long first, unsigned long count) const {
  const tables::Table& table = m_numbers && isTime(column) ? *m_numbers : m_shown;
  const tables::ColumnType type = table.columns()[column].type;
  if (type == tables::ColumnType::Text) {
    std::vector<std::string> texts(count);
    {
      const py::gil_scoped_release released;
      table.read(column, first, count, texts.data());
    }
    return textsArray(texts, {count});
  }
  const std::string spelled = spelledDtype(column);
  if (table.columns()[column].isNullable && spelled.empty()) {
    return readNullable(column, first, count);
  }
  const auto stored = static_cast<object_model::StoredType>(type);
  py::array cells =
      emptyArray(py::dtype(spelled.empty() ? memory::nameOf(stored) : spelled), {count});
  void* const destination = cells.mutable_data();
  const py::gil_scoped_release released;
  tables::visitColumnType(type, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    table.read(column, first, count, static_cast<T*>(destination));
  });
  return cells;
}

}  // namespace quillon::python
