#include "MarkdownUI/Layout/FlowLayout.h"

namespace quillmoth::markdown {

void FlowLayout::addSpacer() {
    if (!rowIsEmpty_ && rowWidth_ + horizontalSpacing_ > width_)
        startRow();
    if (rows_.empty())
        startRow();
    rowIsEmpty_ = false;
    rowWidth_ = width_;
}

std::vector<Rect> FlowLayout::frames() const {
    std::vector<Rect> result = frames_;
    double top = 0;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const std::size_t end = row + 1 < rows_.size() ? rows_[row + 1].begin : frames_.size();
        for (std::size_t i = rows_[row].begin; i < end; ++i)
            result[i].y = top + rows_[row].height - result[i].height;
        top += rows_[row].height + verticalSpacing_;
    }
    return result;
}

Size FlowLayout::size() const {
    Size result{widest_, 0};
    for (const Row& row : rows_)
        result.height += row.height + (&row == rows_.data() ? 0 : verticalSpacing_);
    return result;
}

void FlowLayout::startRow() {
    rows_.push_back({frames_.size(), 0});
    rowWidth_ = 0;
    rowIsEmpty_ = true;
}

void FlowLayout::place(Size size) {
    if (rows_.empty())
        startRow();
    const double x = rowIsEmpty_ ? 0 : rowWidth_ + horizontalSpacing_;
    frames_.push_back({x, 0, size.width, size.height});
    rowWidth_ = x + size.width;
    rowIsEmpty_ = false;
    widest_ = std::max(widest_, rowWidth_);
    rows_.back().height = std::max(rows_.back().height, size.height);
}

} // namespace quillmoth::markdown
