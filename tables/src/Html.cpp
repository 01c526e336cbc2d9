#include <quillon/memory/Wording.h>
#include <quillon/tables/Html.h>

namespace quillon::tables {
namespace {

std::string_view entityOf(char character) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

}  // namespace

std::string inHtml(std::string_view text) {
  std::string result;
  for (const char character : memory::escaped(text)) {
    const std::string_view entity = entityOf(character);
    if (entity.empty()) {
      result += character;
    } else {
      result += entity;
    }
  }
  return result;
}

}  // namespace quillon::tables
