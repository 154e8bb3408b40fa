#pragma once

#include <cstddef>
#include <cstdint>

namespace quillmoth::highlighting {

/// What a coloured piece of code is.
enum class TokenType : std::uint8_t {
    keyword,
    string,
    type,
    call,
    number,
    comment,
    property,      ///< a member of something named before the dot: `task.state`
    dotAccess,     ///< a member with nothing before the dot: `.debug`
    preprocessing, ///< `#if`, and attributes that name a type: `@MainActor`
};

inline constexpr std::size_t kTokenTypeCount = 9;

} // namespace quillmoth::highlighting
