#pragma once

#include <cstddef>
#include <functional>

namespace quillmoth::markdown {

/// `seed` with the hash of one more field mixed in; the order of the fields counts.
[[nodiscard]] constexpr std::size_t mixHash(std::size_t seed, std::size_t field) {
    constexpr std::size_t kGoldenRatio = 0x9E3779B97F4A7C15;
    return seed ^ (field + kGoldenRatio + (seed << 6) + (seed >> 2));
}

template<class... Fields>
[[nodiscard]] std::size_t hashOf(const Fields&... fields) {
    std::size_t seed = 0;
    ((seed = mixHash(seed, std::hash<Fields>{}(fields))), ...);
    return seed;
}

} // namespace quillmoth::markdown
