#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillmoth::markdown {

/// Lays `text` out with the fixed text engine and asks everything of it that a view asks: display list, text,
/// hit tests, selections, links. `seed` chooses the width and the points. Gives what is wrong; empty where
/// nothing is.
[[nodiscard]] std::string faultOfDocument(std::string_view text, std::uint64_t seed);

/// What is wrong where text arrives in pieces, whose lengths `seed` chooses; empty where nothing is.
[[nodiscard]] std::string faultOfStream(std::string_view text, std::uint64_t seed);

/// What differs between a document laid out from its middle and one laid out at once; empty where nothing
/// does.
[[nodiscard]] std::string faultOfLaziness(std::string_view text, std::uint64_t seed);

} // namespace quillmoth::markdown
