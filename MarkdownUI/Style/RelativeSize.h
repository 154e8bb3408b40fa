#pragma once

#include "MarkdownUI/Style/FontProperties.h"

#include <cstdint>

namespace quillmoth::markdown {

/// A length in terms of the font in force.
struct RelativeSize {
    enum class Unit : std::uint8_t {
        em,  ///< the scaled size
        rem, ///< the size of the root, without any scale
    };

    double value = 0;
    Unit unit = Unit::em;

    static const RelativeSize zero;

    [[nodiscard]] static constexpr RelativeSize em(double value) { return {value, Unit::em}; }

    [[nodiscard]] static constexpr RelativeSize rem(double value) { return {value, Unit::rem}; }

    /// In whole points, halves away from zero.
    [[nodiscard]] double points(const FontProperties& properties = {}) const;

    bool operator==(const RelativeSize&) const = default;
};

inline constexpr RelativeSize RelativeSize::zero{0, Unit::rem};

} // namespace quillmoth::markdown
