#include <quillon/compare/Text.h>
#include <quillon/memory/HtmlText.h>
#include <quillon/memory/NumberText.h>
#include <quillon/memory/Wording.h>

#include <cmath>
#include <string>
#include <string_view>

#include "PictureSvg.h"
#include "Sentences.h"

namespace quillon::compare {
namespace {

using memory::inHtml;

constexpr std::string_view STYLE = R"(
  :root { --line: #dfe3e8; --row: #f4f6f9; --cell: #e8ecf1; --none: #3b7dd8;
          --d1: #fde0c5; --d2: #fbc79b; --d3: #f7a974; --d4: #ef8a55;
          --d5: #e2683f; --d6: #cc4632; --d7: #a92a2b; --d8: #7d1526; }
  @media (prefers-color-scheme: dark) {
    :root { --line: #2a323c; --row: #1b2026; --cell: #232a32; --none: #5b9bf0;
            --d1: #4a1a20; --d2: #6e2227; --d3: #94302a; --d4: #b8482f;
            --d5: #d86a3d; --d6: #ee9355; --d7: #f8bb7c; --d8: #ffe2b3; }
  }
  body { overflow-wrap: anywhere; }
  h1 { font-size: 1.25rem; margin: 0; }
  p { margin: 0.2rem 0 1rem; color: var(--faint); }
  p b { color: var(--ink); }
  details { border-bottom: 1px solid var(--line); }
  summary { padding: 0.5rem; cursor: pointer; }
  summary:hover, details[open] > summary { background: var(--row); }
  summary strong { margin-right: 0.5rem; }
  summary svg { height: 2rem; width: 3rem; float: right; }
  summary::after { content: ""; display: block; clear: both; }
  .figures { display: flex; flex-wrap: wrap; gap: 1rem 2.5rem; padding: 0.5rem 1.5rem 1.2rem; }
  table { border-spacing: 0; align-self: start; font-variant-numeric: tabular-nums; }
  th, td { padding: 0.15rem 1rem 0.15rem 0; text-align: left; font-weight: normal; }
  th { color: var(--faint); }
  td.n { text-align: right; }
  figure { margin: 0; }
  figcaption { color: var(--faint); max-width: 26rem; }
  svg path { fill: none; stroke-width: 1; shape-rendering: crispEdges; }
  .d0 { fill: var(--cell); } .dn { stroke: var(--none); }
  .d1 { stroke: var(--d1); } .d2 { stroke: var(--d2); } .d3 { stroke: var(--d3); }
  .d4 { stroke: var(--d4); } .d5 { stroke: var(--d5); } .d6 { stroke: var(--d6); }
  .d7 { stroke: var(--d7); } .d8 { stroke: var(--d8); }
)";

std::string numberText(double number) { return memory::textInDigits(number, memory::SHOWN_DIGITS); }

/// The entry that a row is about: for an attribute, what it belongs to.
std::string entryOf(const Difference& row) {
  return row.reason == Reason::Attribute ? row.path.substr(0, row.path.rfind('@')) : row.path;
}

/// Rows that follow each other and are about one entry.
struct Entry {
  std::string path;
  std::vector<const Difference*> rows;
};

std::vector<Entry> entriesOf(const Report& report) {
  std::vector<Entry> entries;
  for (const Difference& row : report.rows) {
    const std::string path = entryOf(row);
    if (entries.empty() || entries.back().path != path) {
      entries.push_back({path, {}});
    }
    entries.back().rows.push_back(&row);
  }
  return entries;
}

std::string figureRow(const std::string& name, const std::string& value) {
  return "<tr><th>" + name + "</th><td class=\"n\">" + value + "</td></tr>\n";
}

/// The figures of values that differ, one below the other.
std::string figuresOf(const Difference& row) {
  const double share = 100.0 * static_cast<double>(row.count) / static_cast<double>(row.size);
  std::string text = "<table>\n";
  text += figureRow("values", std::to_string(row.size));
  text += figureRow("differ",
                    std::to_string(row.count) + " (" + memory::textInDigits(share, 3) + " %)");
  if (row.missing > 0) {
    text += figureRow("missing in one file alone", std::to_string(row.missing));
  }
  if (!row.largest.empty() && !std::isnan(row.largest.front().delta)) {
    text += figureRow("largest delta", numberText(row.largest.front().delta));
    text += figureRow("largest relative delta", numberText(row.largestRelative));
    text += figureRow("mean delta", numberText(row.mean));
  }
  return text + "</table>\n";
}

std::string cell(const std::string& text) { return "<td class=\"n\">" + inHtml(text) + "</td>"; }

/// A table of the largest deltas and where they are.
std::string largestOf(const Difference& row) {
  if (row.largest.empty()) {
    return {};
  }
  const bool hasDelta = !std::isnan(row.largest.front().delta);
  std::string text = std::string("<table>\n<tr>") + (hasDelta ? "<th>delta</th>" : "");
  for (const Place& place : row.largest.front().at) {
    text += "<th>" + inHtml(place.dimension) + "</th>";
  }
  text += "<th>first</th><th>second</th></tr>\n";
  for (const PlacedPair& pair : row.largest) {
    text += "<tr>" + (hasDelta ? cell(numberText(pair.delta)) : std::string());
    for (const Place& place : pair.at) {
      const bool isKnown = !std::holds_alternative<std::monostate>(place.coordinate);
      text += cell(std::to_string(place.index) +
                   (isKnown ? " (" + plainText(place.coordinate) + ")" : std::string()));
    }
    text += cell(plainText(pair.first)) + cell(plainText(pair.second)) + "</tr>\n";
  }
  return text + "</table>\n";
}

std::string pictureOf(const Difference& row, const std::string& id) {
  const Picture& picture = *row.picture;
  const auto sideInWords = [](const Picture::Side& side) {
    return inHtml(side.dimension) + " (" + std::to_string(side.size) + ")";
  };
  return "<figure>\n" + drawingAgain(picture, id) + "\n<figcaption>The largest delta in each of " +
         std::to_string(picture.across.cells) + " × " + std::to_string(picture.down.cells) +
         " cells: " + sideInWords(picture.across) + " from left to right, " +
         sideInWords(picture.down) + " downwards.<br>\n" + legendOf(picture) +
         "</figcaption>\n</figure>\n";
}

std::string sentences(const Entry& entry) {
  std::string text;
  for (const Difference* row : entry.rows) {
    std::string sentence = reasonInWords(*row);  // escaped already where it quotes
    if (row->reason == Reason::Attribute) {
      sentence.insert(0, memory::escaped(row->path.substr(row->path.rfind('@'))) + ": ");
    }
    text += (text.empty() ? "" : "<br>\n") + memory::markupOf(sentence);
  }
  return text;
}

std::string entryInHtml(const Entry& entry, std::size_t number) {
  std::string drawing;
  std::string body;
  const std::string id = "picture" + std::to_string(number);
  for (const Difference* row : entry.rows) {
    if (row->reason != Reason::Values) {
      continue;
    }
    body += figuresOf(*row) + largestOf(*row);
    if (row->picture) {
      drawing = drawingOf(*row->picture, id);
      body += pictureOf(*row, id);
    }
  }
  return "<details>\n<summary>" + drawing + "<strong>" + inHtml(entry.path) + "</strong> " +
         sentences(entry) + "</summary>\n<div class=\"figures\">\n" + body + "</div>\n</details>\n";
}

std::string ruleInWords(const Report& report) {
  const auto number = [](double value) { return memory::shortestText(value); };
  std::string text = "the same: a = b";
  if (report.tolerance.absolute > 0 || report.tolerance.relative > 0) {
    text += " or |a − b| ≤ " + number(report.tolerance.absolute) + " + " +
            number(report.tolerance.relative) + " · |b|";
  }
  return text + (report.nanEqual ? " or both missing" : "");
}

std::string headline(const Report& report, std::size_t entries) {
  if (report.same) {
    return "The same";
  }
  std::string text = entries == 0 ? "Nothing else differs"
                                  : std::to_string(entries) +
                                        (entries == 1 ? " entry differs" : " entries differ");
  if (!report.notCompared.empty()) {
    text += ", " + std::to_string(report.notCompared.size()) + " not compared";
  }
  return text;
}

}  // namespace

std::string toHtml(const Report& report, const std::string& first, const std::string& second) {
  const std::vector<Entry> entries = entriesOf(report);
  std::string text = memory::pageStart(first + " and " + second, STYLE);
  text += "<h1>" + headline(report, entries.size()) + "</h1>\n<p><b>" + inHtml(first) +
          "</b> and <b>" + inHtml(second) + "</b> · " + memory::counted(report.values, "value") +
          " compared · " + ruleInWords(report) + "</p>\n";
  for (std::size_t k = 0; k < entries.size(); ++k) {
    text += entryInHtml(entries[k], k + 1);
  }
  for (const NotCompared& entry : report.notCompared) {
    text += "<details>\n<summary><strong>" + inHtml(entry.path) +
            "</strong> not compared</summary>\n<div class=\"figures\">" +
            memory::markupOf(memory::disarmed(entry.reason)) + "</div>\n</details>\n";
  }
  return text + "</body>\n</html>\n";
}

}  // namespace quillon::compare
