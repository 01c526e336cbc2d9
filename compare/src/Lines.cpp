#include <quillon/compare/Text.h>
#include <quillon/memory/NumberText.h>
#include <quillon/memory/Wording.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "Sentences.h"

namespace quillon::compare {
namespace {

using memory::escaped;

// Of longer texts, so many characters are shown, some of them before the first that differs.
constexpr std::size_t LONGEST_TEXT = 40;
constexpr std::size_t SHARED_TEXT = 10;

using Texts = std::pair<std::string, std::string>;

/// Where the UTF-8 character begins that has the byte at `position`, which may be the end of the
/// text; `position` where it is part of none.
std::size_t characterStart(const std::string& text, std::size_t position) {
  constexpr std::size_t MOST_BYTES_BEHIND_FIRST = 3;
  for (std::size_t k = 0; k <= std::min(position, MOST_BYTES_BEHIND_FIRST); ++k) {
    if ((static_cast<unsigned char>(text[position - k]) & 0xC0U) != 0x80U) {
      return position - k;
    }
  }
  return position;
}

std::string excerpt(const std::string& text, std::size_t start) {
  const std::size_t first = characterStart(text, start);
  const std::size_t last = characterStart(text, std::min(text.size(), first + LONGEST_TEXT));
  return (first == 0 ? "" : "...") + memory::inQuotes(text.substr(first, last - first)) +
         (last == text.size() ? "" : "...");
}

/// Two texts, long ones as excerpts that show where they begin to differ.
Texts excerpts(const std::string& a, const std::string& b) {
  const auto shared = static_cast<std::size_t>(
      std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
  const bool isShort = std::max(a.size(), b.size()) <= LONGEST_TEXT;
  const std::size_t start = isShort || shared < 2 * SHARED_TEXT ? 0 : shared - SHARED_TEXT;
  return {excerpt(a, start), excerpt(b, start)};
}

/// The colours of lines at a terminal, or none.
class Paint {
 public:
  explicit Paint(bool isColored) : m_isColored(isColored) {}

  std::string path(const std::string& text) const { return in("1", text); }
  std::string pair(const Texts& texts) const {
    return in("31", texts.first) + " and " + in("32", texts.second);
  }

 private:
  std::string in(const char* color, const std::string& text) const {
    return m_isColored ? std::string("\x1b[") + color + "m" + text + "\x1b[0m" : text;
  }

  bool m_isColored;
};

std::string pairInWords(const Value& first, const Value& second, const Paint& paint) {
  const auto* const a = std::get_if<std::string>(&first);
  const auto* const b = std::get_if<std::string>(&second);
  const Texts texts =
      // never false: of two values that are shown together, both are texts or neither is
      a != nullptr && b != nullptr ? excerpts(*a, *b) : Texts(textOf(first), textOf(second));
  return paint.pair(texts);
}

/// A coordinate behind its index; times and texts need no quotes there.
std::string coordinateInWords(const Value& coordinate) {
  if (std::holds_alternative<std::monostate>(coordinate)) {
    return {};
  }
  return " (" + escaped(plainText(coordinate)) + ")";
}

/// " at time=3, lat=10", with coordinates where they are to be shown; nothing without dimensions.
std::string placeInWords(const std::vector<Place>& places, bool withCoordinates) {
  std::string text;
  for (const Place& place : places) {
    text += (text.empty() ? " at " : ", ") + escaped(place.dimension) + "=" +
            std::to_string(place.index) +
            (withCoordinates ? coordinateInWords(place.coordinate) : std::string());
  }
  return text;
}

std::string deltaInWords(double delta) { return memory::textInDigits(delta, memory::SHOWN_DIGITS); }

std::string valuesInWords(const Difference& row, const Paint& paint) {
  std::string text =
      std::to_string(row.count) + " of " + std::to_string(row.size) + " values differ";
  if (row.missing > 0) {
    text += ", " + std::to_string(row.missing) + " missing in one file alone";
  }
  if (row.largest.empty()) {
    return text;
  }
  const PlacedPair& pair = row.largest.front();
  text += std::isnan(pair.delta) ? "; the first is"
                                 : "; the largest delta is " + deltaInWords(pair.delta);
  return text + placeInWords(pair.at, false) + ": " + pairInWords(pair.first, pair.second, paint);
}

std::string bothInWords(const std::string& what, const Difference& row, const Paint& paint) {
  return what +
         " differ: " + paint.pair({escaped(plainText(row.first)), escaped(plainText(row.second))});
}

std::string attributeInWords(const Difference& row, const Paint& paint) {
  if (std::holds_alternative<std::monostate>(row.first)) {
    return "only in the second: " + textOf(row.second);
  }
  if (std::holds_alternative<std::monostate>(row.second)) {
    return "only in the first: " + textOf(row.first);
  }
  return "the attributes differ: " + pairInWords(row.first, row.second, paint);
}

std::string reasonIn(const Paint& paint, const Difference& row) {
  switch (row.reason) {
    case Reason::Kind:
      return bothInWords("the kinds", row, paint);
    case Reason::Shape:
      return bothInWords("the shapes", row, paint);
    case Reason::Dimensions:
      return bothInWords("the dimensions", row, paint);
    case Reason::ElementType:
      return bothInWords("the element types", row, paint);
    case Reason::Unit:
      return "the units differ: " + pairInWords(row.first, row.second, paint);
    case Reason::Attribute:
      return attributeInWords(row, paint);
    case Reason::Values:
      return valuesInWords(row, paint);
    case Reason::OnlyInFirst:
    case Reason::OnlyInSecond:
      break;
  }
  return textOf(row.reason);
}

std::string lineOf(const Difference& row, const Paint& paint) {
  return paint.path(escaped(row.path)) + ": " + reasonIn(paint, row);
}

std::string lineOf(const NotCompared& entry, const Paint& paint) {
  return paint.path(escaped(entry.path)) + ": not compared: " + memory::disarmed(entry.reason);
}

/// "  0.5 at time=3 (2011-08-01): 1 and 1.5"; without a delta, "  at ...", without a place either
/// the two values alone.
std::string lineOf(const PlacedPair& pair, const Paint& paint) {
  const std::string delta = std::isnan(pair.delta) ? "" : " " + deltaInWords(pair.delta);
  const std::string where = delta + placeInWords(pair.at, true);
  return " " + (where.empty() ? " " : where + ": ") + pairInWords(pair.first, pair.second, paint);
}

void addLines(const Difference& row, const LineOptions& options, std::vector<std::string>& result) {
  const Paint paint(options.isColored);
  result.push_back(lineOf(row, paint));
  const std::size_t shown = std::min<std::size_t>(row.largest.size(), options.largest);
  for (std::size_t k = 0; k < shown; ++k) {
    result.push_back(lineOf(row.largest[k], paint));
  }
}

void addLines(const NotCompared& entry, const LineOptions& options,
              std::vector<std::string>& result) {
  result.push_back(lineOf(entry, Paint(options.isColored)));
}

template <class Row>
void addAll(const std::vector<Row>& rows, const LineOptions& options,
            std::vector<std::string>& result) {
  const std::size_t shown = std::min<std::size_t>(rows.size(), options.most);
  for (std::size_t k = 0; k < shown; ++k) {
    addLines(rows[k], options, result);
  }
  if (shown < rows.size()) {
    result.push_back("... and " + std::to_string(rows.size() - shown) + " more");
  }
}

}  // namespace

std::string plainText(const Value& value) {
  const auto* const text = std::get_if<std::string>(&value);
  return text == nullptr ? textOf(value) : *text;
}

std::string reasonInWords(const Difference& row) { return reasonIn(Paint(false), row); }

std::vector<std::string> lines(const Report& report, const LineOptions& options) {
  std::vector<std::string> result;
  addAll(report.rows, options, result);
  addAll(report.notCompared, options, result);
  return result;
}

std::string text(const Report& report, const LineOptions& options) {
  if (report.same) {
    return "the same: " + std::to_string(report.values) + " values";
  }
  std::string result;
  for (const std::string& line : lines(report, options)) {
    result += (result.empty() ? "" : "\n") + line;
  }
  return result;
}

std::string message(const Report& report) {
  const Paint plain(false);
  if (!report.rows.empty()) {
    return lineOf(report.rows.front(), plain);
  }
  return report.notCompared.empty() ? std::string() : lineOf(report.notCompared.front(), plain);
}

}  // namespace quillon::compare
