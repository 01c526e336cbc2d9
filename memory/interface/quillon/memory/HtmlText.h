/// @file
/// Text in HTML.
#pragma once

#include <string>
#include <string_view>

namespace quillon::memory {

/// `text` as HTML shows it literally, in element content and in quoted attribute values. What
/// `escaped` replaces is replaced here as well, so that the result is UTF-8 that HTML can
/// hold.
[[nodiscard]] std::string inHtml(std::string_view text);

/// A text that is escaped as for terminals already (see `memory::escaped`), as HTML shows it
/// literally.
[[nodiscard]] std::string markupOf(std::string_view text);

/// The start of an HTML document, down to `<body>`, for bright and dark screens: with the colours
/// `--ink`, `--paper` and `--faint`, which the style may use.
/// @param title the page's name as plain text.
/// @param style further rules of its style sheet.
[[nodiscard]] std::string pageStart(std::string_view title, std::string_view style);

}  // namespace quillon::memory
