#include "MarkdownUI/Layout/HeightIndex.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace quillmoth::markdown {

namespace {

std::size_t lowestBit(std::size_t value) {
    return value & (~value + 1);
}

} // namespace

void HeightIndex::assign(std::vector<double> heights) {
    heights_ = std::move(heights);
    tree_.assign(heights_.size() + 1, 0);
    for (std::size_t i = 1; i < tree_.size(); ++i) {
        tree_[i] += heights_[i - 1];
        const std::size_t parent = i + lowestBit(i);
        if (parent < tree_.size())
            tree_[parent] += tree_[i];
    }
}

void HeightIndex::set(std::size_t index, double height) {
    const double change = height - heights_[index];
    heights_[index] = height;
    if (change == 0)
        return;
    for (std::size_t i = index + 1; i < tree_.size(); i += lowestBit(i))
        tree_[i] += change;
}

double HeightIndex::top(std::size_t index) const {
    double sum = 0;
    for (std::size_t i = index; i > 0; i -= lowestBit(i))
        sum += tree_[i];
    return sum;
}

std::size_t HeightIndex::find(double y) const {
    if (heights_.empty())
        return 0;
    std::size_t position = 0;
    double rest = y;
    for (std::size_t step = std::bit_floor(heights_.size()); step > 0; step /= 2) {
        if (position + step < tree_.size() && tree_[position + step] <= rest) {
            position += step;
            rest -= tree_[position];
        }
    }
    return std::min(position, heights_.size() - 1);
}

} // namespace quillmoth::markdown
