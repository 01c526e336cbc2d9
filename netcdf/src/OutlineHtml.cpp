#include <quillon/memory/HtmlText.h>
#include <quillon/memory/Wording.h>
#include <quillon/netcdf/Outline.h>

#include <string_view>

#include "FactTexts.h"

namespace quillon::netcdf {
namespace {

using memory::inHtml;

constexpr std::string_view STYLE = R"(
  :root { --line: #dfe3e8; --row: #f4f6f9; --bad: #a92a2b; }
  @media (prefers-color-scheme: dark) {
    :root { --line: #2a323c; --row: #1b2026; --bad: #ee9355; }
  }
  body { overflow-wrap: anywhere; }
  h1 { font-size: 1.25rem; margin: 0; }
  h2 { font-size: 1.05rem; margin: 1.5rem 0 0.3rem; }
  h2 span, .faint { color: var(--faint); font-weight: normal; }
  details { border-bottom: 1px solid var(--line); }
  summary { padding: 0.35rem 0.5rem; cursor: pointer; }
  summary:hover, details[open] > summary { background: var(--row); }
  summary > * { margin-right: 0.8rem; }
  .bad { color: var(--bad); }
  table { border-spacing: 0; margin: 0.3rem 1.5rem 0.9rem; }
  th, td { padding: 0.1rem 1rem 0.1rem 0; text-align: left; vertical-align: top;
           font-weight: normal; }
  th { color: var(--faint); }
)";

std::string rowOf(const std::string& name, const std::string& text) {
  return "<tr><th>" + inHtml(name) + "</th><td>" + inHtml(text) + "</td></tr>\n";
}

std::string rowsOf(const std::vector<memory::Attribute>& attributes) {
  std::string rows;
  for (const memory::Attribute& attribute : attributes) {
    rows += rowOf(attribute.name, inWords(attribute.value));
  }
  return rows;
}

std::string part(const char* element, const char* kind, const std::string& text) {
  return text.empty()
             ? text
             : std::string("<") + element + kind + ">" + inHtml(text) + "</" + element + "> ";
}

std::string inHtmlRow(const VariableFacts& variable) {
  std::string text = "<details>\n<summary>" + part("strong", "", nameOf(variable)) +
                     part("span", "", variable.type) +
                     part("span", " class=\"faint\"", dimensionsInWords(variable)) +
                     part("span", "", variable.unit) +
                     part("span", " class=\"faint\"", variable.description) +
                     (variable.isReadable ? "" : "<span class=\"bad\">cannot be read</span>") +
                     "</summary>\n<table>\n";
  for (const auto& [name, detail] : detailsOf(variable)) {
    text += rowOf(name, detail);
  }
  return text + rowsOf(variable.attributes) + "</table>\n</details>\n";
}

std::string inHtmlSection(const GroupFacts& group) {
  std::string text =
      "<h2>" + inHtml(group.path) + " <span>" + inHtml(group.title) + "</span></h2>\n";
  if (!group.attributes.empty()) {
    text += "<details>\n<summary class=\"faint\">" +
            memory::counted(group.attributes.size(), "attribute") + "</summary>\n<table>\n" +
            rowsOf(group.attributes) + "</table>\n</details>\n";
  }
  for (const VariableFacts& variable : group.variables) {
    text += inHtmlRow(variable);
  }
  return text;
}

}  // namespace

std::string outlineHtml(const std::vector<GroupFacts>& groups, const std::string& file) {
  std::string text = memory::pageStart(file, STYLE);
  text += "<h1>" + inHtml(file) + "</h1>\n";
  for (const GroupFacts& group : groups) {
    text += inHtmlSection(group);
  }
  return text + "</body>\n</html>\n";
}

}  // namespace quillon::netcdf
