#include <quillon/compare/Value.h>
#include <quillon/memory/JsonText.h>
#include <quillon/memory/NumberText.h>
#include <quillon/memory/Wording.h>

#include <type_traits>

namespace quillon::compare {
namespace {

/// The content as text or as JSON, each kind of value by its own function.
template <class Text, class Number>
std::string inWords(const Value& value, const char* nothing, const Text& text,
                    const Number& number) {
  return std::visit(
      [&](const auto& content) -> std::string {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, std::monostate>) {
          return nothing;
        } else if constexpr (std::is_same_v<Content, std::string>) {
          return text(content);
        } else {
          return number(content);
        }
      },
      value);
}

}  // namespace

std::string textOf(const Value& value) {
  return inWords(
      value, "none", [](const std::string& text) { return memory::inQuotes(text); },
      [](const auto& number) { return memory::shortestText(number); });
}

std::string jsonOf(const Value& value) {
  return inWords(
      value, "null", [](const std::string& text) { return memory::jsonText(text); },
      [](const auto& number) { return memory::jsonNumber(number); });
}

}  // namespace quillon::compare
