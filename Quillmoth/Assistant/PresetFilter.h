#pragma once

#include "Quillmoth/Prompts/PromptData.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

/// Finds presets by name. A name fits when its full Unicode upper-casing holds that of the search text as a
/// substring. Keeps the upper-cased names of the list that it has seen last. One thread.
class PresetFilter {
public:
    /// To be called whenever the presets may have changed.
    void invalidate() { isValid_ = false; }

    /// The indices of the presets of the class, `context` or the other one, whose name fits; ascending.
    [[nodiscard]] std::vector<std::int64_t> matching(const std::vector<PromptData>& prompts,
                                                     std::string_view search, bool context);

private:
    /// The names of one class, each with a separator behind it that no search text can hold.
    struct Names {
        std::string text;
        /// Offset behind the separator.
        std::vector<std::size_t> ends;
        std::vector<std::int64_t> indices;
        /// Of each name, which of the letters that `letterOf` knows it has, a bit each.
        std::vector<std::uint64_t> letters;
        /// How often each byte occurs in `text`.
        std::array<std::size_t, 256> counts{};

        void add(std::string_view name, std::int64_t index);
        [[nodiscard]] std::vector<std::int64_t> holding(std::string_view upper) const;
        [[nodiscard]] std::vector<std::int64_t> holdingLetter(std::uint64_t letter) const;

        /// Two places in a search text, by which it is looked for.
        struct Anchors {
            std::size_t first;
            std::size_t second;
        };

        [[nodiscard]] Anchors anchorsOf(std::string_view upper) const;
        [[nodiscard]] std::size_t find(std::string_view upper, Anchors anchors, std::size_t from) const;
    };

    void rebuild(const std::vector<PromptData>& prompts);

    Names context_;
    Names nonContext_;
    bool isValid_ = false;
};

} // namespace quillmoth
