#include "FixedTextEngine.h"

#include <algorithm>
#include <cmath>

namespace quillmoth::markdown {

namespace {

constexpr double kAdvance = 0.5;
constexpr double kAscent = 0.9;
constexpr double kDescent = 0.3;

struct Cluster {
    std::size_t begin = 0;
    std::size_t end = 0;
    double width = 0;
    double ascent = 0;
    double descent = 0;
    char first = 0;
};

class FixedShapedText final : public ShapedText {
public:
    FixedShapedText(const AttributedText& text, const TextOptions& options) : options_(options) {
        const std::string& bytes = text.text();
        for (const AttributedText::Run& run : text.runs()) {
            const double size = run.attributes->font.value_or(options.font).size;
            for (std::size_t begin = run.begin; begin < run.end();) {
                std::size_t end = begin + 1;
                while (end < run.end() && (static_cast<unsigned char>(bytes[end]) & 0xC0) == 0x80)
                    ++end;
                Cluster cluster{begin, end, size * kAdvance, size * kAscent, size * kDescent, bytes[begin]};
                if (run.attributes->attachment) {
                    cluster.width = run.attributes->attachment->size.width;
                    cluster.ascent = run.attributes->attachment->size.height;
                }
                clusters_.push_back(cluster);
                begin = end;
            }
        }
        breakLines(bytes.size());
    }

    [[nodiscard]] const std::vector<TextLine>& lines() const override { return lines_; }

    [[nodiscard]] std::size_t offsetAt(std::size_t line, double x) const override {
        const TextLine& all = lines_[line];
        const double along = isRightToLeft() ? all.x + all.advance - x : x - all.x;
        double passed = 0;
        for (const Cluster& cluster : clustersOf(all.begin, all.end)) {
            if (along < passed + cluster.width / 2)
                return cluster.begin;
            passed += cluster.width;
        }
        return all.end;
    }

    [[nodiscard]] double caretX(std::size_t line, std::size_t offset) const override {
        const TextLine& all = lines_[line];
        double passed = 0;
        for (const Cluster& cluster : clustersOf(all.begin, std::min(offset, all.end)))
            passed += cluster.width;
        return isRightToLeft() ? all.x + all.advance - passed : all.x + passed;
    }

    [[nodiscard]] std::vector<Rect> rectanglesOf(std::size_t begin, std::size_t end) const override {
        std::vector<Rect> result;
        for (std::size_t i = 0; i < lines_.size(); ++i) {
            const TextLine& line = lines_[i];
            const std::size_t from = std::max(begin, line.begin);
            const std::size_t to = std::min(end, line.end);
            if (from >= to)
                continue;
            const double first = caretX(i, from);
            const double last = caretX(i, to);
            result.push_back({std::min(first, last), line.top, std::abs(last - first), line.height()});
        }
        return result;
    }

private:
    [[nodiscard]] bool isRightToLeft() const { return options_.direction == TextDirection::rightToLeft; }

    [[nodiscard]] std::vector<Cluster> clustersOf(std::size_t begin, std::size_t end) const {
        std::vector<Cluster> result;
        auto cluster = std::ranges::lower_bound(clusters_, begin, {}, &Cluster::begin);
        for (; cluster != clusters_.end() && cluster->begin < end; ++cluster)
            result.push_back(*cluster);
        return result;
    }

    void breakLines(std::size_t length) {
        std::size_t index = 0;
        bool isDone = false;
        while (!isDone) {
            const std::size_t first = index;
            std::size_t behindBlank = first;
            double width = 0;
            while (index < clusters_.size() && clusters_[index].first != '\n' &&
                   (index == first || clusters_[index].first == ' ' ||
                    width + clusters_[index].width <= options_.width)) {
                width += clusters_[index].width;
                if (clusters_[index++].first == ' ')
                    behindBlank = index;
            }
            const bool endsParagraph = index == clusters_.size() || clusters_[index].first == '\n';
            if (!endsParagraph && behindBlank > first)
                index = behindBlank;
            isDone = index == clusters_.size();
            addLine(first, index, isDone ? length : clusters_[index].begin, !endsParagraph);
            if (!isDone && endsParagraph)
                ++index;
        }
    }

    void addLine(std::size_t first, std::size_t behind, std::size_t end, bool isWrapped) {
        TextLine line;
        line.begin = first < clusters_.size() ? clusters_[first].begin : end;
        line.end = end;
        line.ascent = options_.font.size * kAscent;
        line.descent = options_.font.size * kDescent;
        for (std::size_t i = first; i < behind; ++i) {
            line.advance += clusters_[i].width;
            line.ascent = std::max(line.ascent, clusters_[i].ascent);
            line.descent = std::max(line.descent, clusters_[i].descent);
        }
        for (std::size_t i = behind; isWrapped && i > first && clusters_[i - 1].first == ' '; --i)
            line.advance -= clusters_[i - 1].width;
        if (!lines_.empty())
            line.top = lines_.back().top + lines_.back().height() + options_.lineSpacing;
        if (std::isfinite(options_.width)) {
            const double free = options_.width - line.advance;
            if (options_.alignment == TextAlignment::center)
                line.x = free / 2;
            else if ((options_.alignment == TextAlignment::trailing) != isRightToLeft())
                line.x = free;
        }
        lines_.push_back(line);
    }

    TextOptions options_;
    std::vector<Cluster> clusters_;
    std::vector<TextLine> lines_;
};

} // namespace

std::unique_ptr<ShapedText> FixedTextEngine::shape(const AttributedText& text, const TextOptions& options) {
    bytesShaped += text.text().size();
    ++shapeCalls;
    return std::make_unique<FixedShapedText>(text, options);
}

FontMetrics FixedTextEngine::metricsOf(const Font& font) {
    return {font.size * kAscent, font.size * kDescent, font.size * kAdvance};
}

} // namespace quillmoth::markdown
