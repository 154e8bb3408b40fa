#pragma once

#include "MarkdownUI/Style/Geometry.h"

#include <vector>

namespace quillmoth::markdown {

/// Things in rows that are filled from the left; each stands on the bottom of its row.
class FlowLayout {
public:
    FlowLayout(double horizontalSpacing, double verticalSpacing, double width)
        : horizontalSpacing_(horizontalSpacing), verticalSpacing_(verticalSpacing), width_(width) {}

    /// sizeWithin(width) gives a Rect or Size whose width and height count. It is asked for the width left in
    /// the row, and again for a whole row where it does not fit.
    template<class SizeWithin>
    void add(const SizeWithin& sizeWithin) {
        const double left = width_ - rowWidth_;
        const auto first = sizeWithin(left);
        if (rowIsEmpty_ || rowWidth_ + horizontalSpacing_ + first.width <= width_) {
            place({first.width, first.height});
            return;
        }
        startRow();
        const auto second = sizeWithin(width_);
        place({second.width, second.height});
    }

    /// Takes what is left of the row.
    void addSpacer();

    /// Of all that was added, spacers excepted.
    [[nodiscard]] std::vector<Rect> frames() const;
    [[nodiscard]] Size size() const;

private:
    struct Row {
        std::size_t begin = 0; ///< of its frames
        double height = 0;
    };

    void startRow();
    void place(Size size);

    double horizontalSpacing_;
    double verticalSpacing_;
    double width_;
    double rowWidth_ = 0;
    bool rowIsEmpty_ = true;
    double widest_ = 0;
    std::vector<Row> rows_;
    std::vector<Rect> frames_; ///< y is not set yet
};

} // namespace quillmoth::markdown
