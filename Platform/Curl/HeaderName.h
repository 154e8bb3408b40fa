#pragma once

#include <algorithm>
#include <string_view>

namespace quillmoth::platform {

/// Header names compare without regard to ASCII case (RFC 9110, section 5.1).
[[nodiscard]] constexpr bool sameHeaderName(std::string_view first, std::string_view second) {
    const auto lowered = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::equal(first.begin(), first.end(), second.begin(), second.end(),
                      [&](char a, char b) { return lowered(a) == lowered(b); });
}

} // namespace quillmoth::platform
