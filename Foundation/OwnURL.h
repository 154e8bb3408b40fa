#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillmoth {

/// The scheme of the program's own URLs.
inline constexpr std::string_view kOwnScheme = "quillmoth";

/// The URL with its scheme in lower case where that is the program's own, however it is written (RFC 3986,
/// 6.2.2.1), and something stands behind it. None otherwise. Whatever brings URLs from outside asks here;
/// within the program they compare exactly.
[[nodiscard]] std::optional<std::string> ownURL(std::string_view url);

} // namespace quillmoth
