#pragma once

#include <cstddef>
#include <vector>

namespace quillmoth::markdown {

/// The heights of things that stand below each other. Changing one, its top, and finding what is at a height
/// cost the logarithm of their number.
class HeightIndex {
public:
    void assign(std::vector<double> heights);
    void set(std::size_t index, double height);

    [[nodiscard]] std::size_t size() const { return heights_.size(); }

    [[nodiscard]] double height(std::size_t index) const { return heights_[index]; }

    /// The sum of the heights before `index`, which may be size().
    [[nodiscard]] double top(std::size_t index) const;

    [[nodiscard]] double total() const { return top(size()); }

    /// The index of what is at `y`: the first above it, the last below; 0 where there is none at all.
    [[nodiscard]] std::size_t find(double y) const;

private:
    std::vector<double> heights_;
    std::vector<double>
        tree_; ///< Fenwick's: tree_[i] sums the heights of i's lowest set bit's range before i
};

} // namespace quillmoth::markdown
