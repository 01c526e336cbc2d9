/// @file
/// A page around a table of exportDataFrameToHtml().
#pragma once

#include <string>

namespace quillon::tables {

/// What stands on a page with a table of the library's own. The texts are plain, the page escapes
/// them.
struct ContractPage {
  std::string title;  ///< the page's heading and its name in the browser
  std::string group;  ///< where the table stands in its file, such as "/cells/otsu"
  std::string rows;   ///< how many rows are shown, in words
  std::string table;  ///< the markup of the table, which goes in as it is
};

/// The whole document.
std::string documentOf(const ContractPage& page);

}  // namespace quillon::tables
