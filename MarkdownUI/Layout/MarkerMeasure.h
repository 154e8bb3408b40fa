#pragma once

#include "MarkdownUI/Layout/TextEngine.h"
#include "MarkdownUI/Style/ListMarker.h"

#include <map>
#include <string>

namespace quillmoth::markdown {

/// The text of a marker in the font around its list.
[[nodiscard]] AttributedText markerText(const ListMarker& marker, const AttributeContainer& attributes);

/// Widths of markers, each measured once.
class MarkerMeasure {
public:
    explicit MarkerMeasure(TextEngine& engine) : engine_(engine) {}

    [[nodiscard]] double widthOf(const ListMarker& marker, const AttributeContainer& attributes);

    /// To be called when the engine's fonts have changed.
    void clear() { widths_.clear(); }

private:
    TextEngine& engine_;
    std::map<std::pair<std::size_t, std::string>, double> widths_; ///< by hash of the font and text
};

} // namespace quillmoth::markdown
