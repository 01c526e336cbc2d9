#include "AxisChoice.h"

#include <quillon/memory/NumberText.h>
#include <quillon/memory/Time.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace quillon::tables {
namespace {

using memory::inQuotes;
using Texts = std::vector<std::string>;

/// The least and greatest number that a value stands for.
struct Span {
  Number first;
  Number last;
};

std::optional<Number> readNumber(std::string_view text) {
  Number number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool whole = read.ec == std::errc() && read.ptr == text.data() + text.size();
  return whole && !std::isnan(number) ? std::optional(number) : std::nullopt;
}

/// A choice along one axis, against its coordinates.
class Chooser {
 public:
  Chooser(const std::string& axis, unsigned long size, const CoordinateValues* coordinates)
      : m_axis(axis), m_size(size), m_coordinates(coordinates) {}

  ChosenIndices operator()(const Position& position) const {
    const long size = static_cast<long>(m_size);
    const long at = position.at < 0 ? position.at + size : position.at;
    if (at < 0 || at >= size) {
      throw Error("The axis " + inQuotes(m_axis) + " has " + memory::counted(m_size, "position") +
                  " and none of number " + std::to_string(position.at));
    }
    return single(static_cast<unsigned long>(at));
  }

  ChosenIndices operator()(const PositionRange& range) const {
    if (range.step < 1) {
      throw Error("The step along the axis " + inQuotes(m_axis) + " must be at least 1, not " +
                  std::to_string(range.step));
    }
    const unsigned long first = boundary(range.first.value_or(0));
    const unsigned long last = boundary(range.last.value_or(static_cast<long>(m_size)));
    if (first >= last) {
      throw Error("There is no position of the axis " + inQuotes(m_axis) + " from " +
                  std::to_string(range.first.value_or(0)) + " to " +
                  std::to_string(range.last.value_or(static_cast<long>(m_size))) +
                  ", end excluded; it has " + memory::counted(m_size, "position"));
    }
    const auto step = static_cast<unsigned long>(range.step);
    return {first, (last - first - 1) / step + 1, step, false};
  }

  ChosenIndices operator()(const Nearest& nearest) const {
    requireCoordinates();
    if (const Texts* texts = asTexts()) {
      return single(exactly(*texts, textOf(nearest.value)));
    }
    return single(nearestTo(spanOf(nearest.value).first));
  }

  ChosenIndices operator()(const CoordinateRange& range) const {
    requireCoordinates();
    if (const Texts* texts = asTexts()) {
      const unsigned long first = exactly(*texts, textOf(range.first));
      const unsigned long last = exactly(*texts, textOf(range.last));
      return between(std::min(first, last), std::max(first, last));
    }
    return within(spanOf(range.first), spanOf(range.last));
  }

  ChosenIndices operator()(const CoordinateText& text) const {
    requireCoordinates();
    const Texts* texts = asTexts();
    if (texts != nullptr && std::find(texts->begin(), texts->end(), text.text) != texts->end()) {
      return (*this)(Nearest{text.text});
    }
    for (std::size_t colon = text.text.find(':'); colon != std::string::npos;
         colon = text.text.find(':', colon + 1)) {
      CoordinateRange range = {text.text.substr(0, colon), text.text.substr(colon + 1)};
      if (isReadable(range.first) && isReadable(range.last)) {
        return (*this)(range);
      }
    }
    return (*this)(Nearest{text.text});
  }

 private:
  static ChosenIndices single(unsigned long at) { return {at, 1, 1, true}; }

  static ChosenIndices between(unsigned long first, unsigned long last) {
    return {first, last - first + 1, 1, false};
  }

  void requireCoordinates() const {
    if (m_coordinates == nullptr) {
      throw Error("The axis " + inQuotes(m_axis) + " has no coordinates; choose by position");
    }
  }

  const Texts* asTexts() const { return std::get_if<Texts>(&m_coordinates->values); }

  /// Where an end of a range lies; none is outside of the axis.
  unsigned long boundary(long position) const {
    const long size = static_cast<long>(m_size);
    return static_cast<unsigned long>(
        std::clamp(position < 0 ? position + size : position, 0L, size));
  }

  static std::string textOf(const CoordinateValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
      return *text;
    }
    if (const auto* number = std::get_if<double>(&value)) {
      return memory::shortestText(*number);
    }
    return memory::timeText(std::get<TimePoint>(value).microseconds, memory::Calendar::Standard,
                            memory::TimeForm::DateAndTime);
  }

  unsigned long exactly(const Texts& texts, const std::string& wanted) const {
    const auto found = std::find(texts.begin(), texts.end(), wanted);
    if (found == texts.end()) {
      throw Error("The axis " + inQuotes(m_axis) + " has no coordinate " + inQuotes(wanted) +
                  "; it has " + memory::listed(texts));
    }
    return static_cast<unsigned long>(found - texts.begin());
  }

  std::optional<Span> find(const CoordinateValue& value) const {
    if (const auto* time = std::get_if<TimePoint>(&value)) {
      const auto at = static_cast<Number>(time->microseconds);
      return m_coordinates->isTime ? std::optional(Span{at, at}) : std::nullopt;
    }
    const auto* text = std::get_if<std::string>(&value);
    if (m_coordinates->isTime) {
      const auto time =
          text == nullptr ? std::nullopt : memory::parseTime(*text, m_coordinates->calendar);
      return time ? std::optional(
                        Span{static_cast<Number>(time->first), static_cast<Number>(time->last)})
                  : std::nullopt;
    }
    const std::optional<Number> number =
        text == nullptr ? std::optional<Number>(std::get<double>(value)) : readNumber(*text);
    return number && !std::isnan(*number) ? std::optional(Span{*number, *number}) : std::nullopt;
  }

  bool isReadable(const CoordinateValue& value) const {
    const Texts* texts = asTexts();
    return texts == nullptr
               ? find(value).has_value()
               : std::find(texts->begin(), texts->end(), textOf(value)) != texts->end();
  }

  Span spanOf(const CoordinateValue& value) const {
    const std::optional<Span> span = find(value);
    if (!span) {
      throw Error("The coordinates of the axis " + inQuotes(m_axis) + " are " +
                  (m_coordinates->isTime ? "times" : "numbers") + ", and " +
                  inQuotes(textOf(value)) + " is none");
    }
    return *span;
  }

  unsigned long nearestTo(Number wanted) const {
    const std::vector<Number> numbers = m_coordinates->asNumbers();
    std::optional<unsigned long> nearest;
    for (unsigned long k = 0; k < numbers.size(); ++k) {
      if (!std::isnan(numbers[k]) &&
          (!nearest || distance(numbers[k], wanted) < distance(numbers[*nearest], wanted))) {
        nearest = k;
      }
    }
    if (!nearest) {
      throw Error("The axis " + inQuotes(m_axis) + " has no coordinate that is not missing");
    }
    return *nearest;
  }

  static Number distance(Number a, Number b) { return a == b ? 0 : std::abs(a - b); }

  /// The coordinates from the lesser to the greater of two, whichever way they are given in.
  ChosenIndices within(const Span& one, const Span& other) const {
    const bool isUpwards = one.first <= other.last;
    const Number least = isUpwards ? one.first : other.first;
    const Number greatest = isUpwards ? other.last : one.last;
    const std::vector<Number> numbers = m_coordinates->asNumbers();
    const auto isIn = [&](Number number) { return number >= least && number <= greatest; };
    const auto first = std::find_if(numbers.begin(), numbers.end(), isIn);
    if (first == numbers.end()) {
      throw Error("No coordinate of the axis " + inQuotes(m_axis) + " is in the chosen range");
    }
    const auto end = std::find_if(numbers.rbegin(), numbers.rend(), isIn).base();
    if (!std::all_of(first, end, isIn)) {
      throw Error("The coordinates of the axis " + inQuotes(m_axis) +
                  " are in no order, so that a range of them is none of positions");
    }
    return between(static_cast<unsigned long>(first - numbers.begin()),
                   static_cast<unsigned long>(end - numbers.begin()) - 1);
  }

  const std::string& m_axis;
  unsigned long m_size;
  const CoordinateValues* m_coordinates;
};

std::optional<long> readPosition(std::string_view text) {
  long position = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), position);
  const bool whole = read.ec == std::errc() && read.ptr == text.data() + text.size();
  return whole ? std::optional(position) : std::nullopt;
}

std::optional<Choice> readPositions(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) {
    const std::optional<long> at = readPosition(text);
    return at ? std::optional<Choice>(Position{*at}) : std::nullopt;
  }
  PositionRange range;
  const std::string_view first = text.substr(0, colon);
  const std::string_view last = text.substr(colon + 1);
  range.first = readPosition(first);
  range.last = readPosition(last);
  const bool good = (range.first || first.empty()) && (range.last || last.empty());
  return good ? std::optional<Choice>(range) : std::nullopt;
}

}  // namespace

ChosenIndices choose(const Choice& choice, const std::string& axis, unsigned long size,
                     const CoordinateValues* coordinates) {
  return std::visit(Chooser(axis, size, coordinates), choice);
}

AxisSelection parseSelection(std::string_view text) {
  const std::size_t equals = text.find('=');
  const std::string_view axis = text.substr(0, equals);
  const std::string_view part =
      equals == std::string_view::npos ? std::string_view() : text.substr(equals + 1);
  std::optional<Choice> choice;
  if (part.size() > 1 && part[0] == '@') {
    choice = CoordinateText{std::string(part.substr(1))};
  } else {
    choice = readPositions(part);
  }
  if (axis.empty() || !choice) {
    throw Error(inQuotes(text) +
                " selects nothing; write AXIS=3, AXIS=0:3 (positions, end excluded), AXIS=@500 or "
                "AXIS=@FIRST:LAST (coordinates, end included)");
  }
  return {std::string(axis), *choice};
}

}  // namespace quillon::tables
