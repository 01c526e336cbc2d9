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

constexpr std::string_view BEFORE_TITLE = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>)";

constexpr std::string_view BEFORE_STYLE = R"(</title>
<style>
  :root { color-scheme: light dark; --ink: #1d232b; --paper: #fff; --faint: #56606b; }
  @media (prefers-color-scheme: dark) {
    :root { --ink: #e2e6ea; --paper: #15191e; --faint: #9aa5b1; }
  }
  body { margin: 0; padding: 1.5rem; color: var(--ink); background: var(--paper);
         font: 0.9375rem/1.45 system-ui, "DejaVu Sans", sans-serif; }
)";

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

std::string pageStart(std::string_view title, std::string_view style) {
  std::string text(BEFORE_TITLE);
  text += inHtml(title);
  text += BEFORE_STYLE;
  text += style;
  return text + "</style>\n</head>\n<body>\n";
}

}  // namespace quillon::memory
