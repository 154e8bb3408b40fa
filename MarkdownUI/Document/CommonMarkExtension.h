#pragma once

#include <compare>
#include <set>
#include <string>

namespace quillmoth::markdown {

/// The name of a syntax extension of cmark-gfm.
struct CommonMarkExtension {
    std::string rawValue;

    auto operator<=>(const CommonMarkExtension&) const = default;

    /// Those that documents are parsed with. Made once, on first use; any thread.
    [[nodiscard]] static const std::set<CommonMarkExtension>& all();
};

} // namespace quillmoth::markdown
