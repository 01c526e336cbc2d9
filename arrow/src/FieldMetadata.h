#pragma once

#include <string>
#include <string_view>

namespace quillon::arrow {

/// The key under which a field's metadata have the unit of its column.
inline constexpr std::string_view UNITS = "units";

/// Metadata of one key and its value, in the bytes of the C data interface.
std::string encodedMetadata(std::string_view key, std::string_view value);

/// What stands under `key` in metadata of the C data interface; empty where nothing does.
/// `metadata` may be null.
std::string metadataAt(const char* metadata, std::string_view key);

}  // namespace quillon::arrow
