/// @file
/// Text in HTML.
#pragma once

#include <string>
#include <string_view>

namespace quillon::tables {

/// `text` as HTML shows it literally, in element content and in quoted attribute values. What
/// `memory::escaped` replaces is replaced here as well, so that the result is UTF-8 that HTML can
/// hold.
std::string inHtml(std::string_view text);

}  // namespace quillon::tables
