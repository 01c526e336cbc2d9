#pragma once

#include <string>
#include <string_view>

namespace quillon::tools {

/// `text` as HTML shows it literally, in element content and in quoted attribute values. What
/// escaped() replaces is replaced here as well, so that the result is UTF-8 that HTML can hold.
std::string inHtml(std::string_view text);

/// What stands on a page with a table. The texts are plain, the page escapes them.
struct HtmlPage {
  std::string title;
  std::string group;  ///< where the table stands in its file, such as "/cells/otsu"
  std::string rows;   ///< how many rows are shown, in words
  std::string table;  ///< the markup of the table, which goes in as it is
};

/// The whole document.
std::string documentOf(const HtmlPage& page);

}  // namespace quillon::tools
