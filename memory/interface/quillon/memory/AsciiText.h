/// @file
/// What is read without regard to case or to blanks around it. Only ASCII counts: no locale plays a
/// part, so that the same file reads the same everywhere.
///
/// Threads: any function may run concurrently.
#pragma once

#include <string>
#include <string_view>

namespace quillon::memory {

/// `text` with small letters for A to Z.
[[nodiscard]] std::string lowerCase(std::string_view text);

/// The part of `text` between the blanks, tabs and line ends around it. It lives as long as `text`.
[[nodiscard]] std::string_view trimmed(std::string_view text);

}  // namespace quillon::memory
