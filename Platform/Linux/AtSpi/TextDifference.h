#pragma once

#include <cstddef>
#include <string_view>

namespace quillmoth::platform {

/// The one stretch in which two texts differ, in bytes, cut between characters: `oldLength` bytes at
/// `location` give way to the `newLength` bytes at the same place of the new text.
struct TextDifference {
    std::size_t location = 0;
    std::size_t oldLength = 0;
    std::size_t newLength = 0;

    [[nodiscard]] bool empty() const { return oldLength == 0 && newLength == 0; }

    friend bool operator==(const TextDifference&, const TextDifference&) = default;
};

/// As short as it can be; the first such place where there are several. Both texts are well-formed UTF-8.
[[nodiscard]] TextDifference differenceBetween(std::string_view oldText, std::string_view newText);

} // namespace quillmoth::platform
