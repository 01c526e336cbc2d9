/// @file
/// What somebody may have meant by a name that is not there.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::memory {

/// The `most` of `names` that are nearest to `name`, the nearest first, of those as near the first:
/// those that take the fewest changes of a letter, where upper and lower case are no change. All of
/// them where there are fewer.
[[nodiscard]] std::vector<std::string> nearestNames(std::string_view name,
                                                    const std::vector<std::string>& names,
                                                    std::size_t most = 3);

/// "; did you mean 'a', 'b' or 'c'?", of the three names that are nearest, as an error's sentence
/// ends with it; empty without names.
[[nodiscard]] std::string offerOf(std::string_view name, const std::vector<std::string>& names);

}  // namespace quillon::memory
