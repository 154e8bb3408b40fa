#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillmoth::platform {

/// What a selection holds. The various names of plain text are kept as one text and offered again as all of
/// them.
struct WaylandContent {
    /// UTF-8; none where the selection is no text.
    std::optional<std::string> text = {};
    /// By their media types.
    std::vector<std::pair<std::string, std::string>> others = {};
    /// False where something could not be read, because of its size or of a slow owner.
    bool isComplete = true;

    [[nodiscard]] bool empty() const { return !text && others.empty(); }
};

using WaylandContentRef = std::shared_ptr<const WaylandContent>;

} // namespace quillmoth::platform
