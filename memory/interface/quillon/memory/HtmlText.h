/// @file
/// Text in HTML.
#pragma once

#include <string>
#include <string_view>

namespace quillon::memory {

/// `text` as HTML shows it literally, in element content and in quoted attribute values. What
/// `escaped` replaces is replaced here as well, so that the result is UTF-8 that HTML can
/// hold.
std::string inHtml(std::string_view text);

/// A text that is escaped as for terminals already (see `memory::escaped`), as HTML shows it
/// literally.
std::string markupOf(std::string_view text);

}  // namespace quillon::memory
