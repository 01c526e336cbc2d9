#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::memory {

/// `text` without anything that a terminal would obey or keep from sight: control characters and
/// bytes that are no UTF-8 appear as escapes such as `\n` and `\x1b`, invisible characters (see
/// isInvisible()) as `\u202e`, and a backslash as two. All other UTF-8 passes.
[[nodiscard]] std::string escaped(std::string_view text);

/// A sentence of this system's own, whose quotations are escaped already: as escaped(), but for
/// backslashes, which pass. Whatever else got into it is harmless then.
[[nodiscard]] std::string disarmed(std::string_view sentence);

/// `text` escaped and in single quotes.
[[nodiscard]] std::string inQuotes(std::string_view text);

/// The escaped names, separated by commas. A long list ends with how many more there are.
[[nodiscard]] std::string listed(const std::vector<std::string>& names);

/// "1 array", "2 arrays".
[[nodiscard]] std::string counted(unsigned long count, const std::string& noun);

/// How many places escaped UTF-8 text takes on a terminal, see widthOf(char32_t).
[[nodiscard]] std::size_t displayWidth(std::string_view text);

}  // namespace quillon::memory
