#include <quillon/memory/HtmlText.h>
#include <quillon/memory/Wording.h>

namespace quillon::memory {
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

std::string markupOf(std::string_view text) {
  std::string result;
  for (const char character : text) {
    const std::string_view entity = entityOf(character);
    if (entity.empty()) {
      result += character;
    } else {
      result += entity;
    }
  }
  return result;
}

std::string inHtml(std::string_view text) { return markupOf(escaped(text)); }

}  // namespace quillon::memory
