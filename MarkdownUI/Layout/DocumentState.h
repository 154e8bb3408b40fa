#pragma once

#include "MarkdownUI/Document/MarkdownContent.h"
#include "MarkdownUI/Layout/Box.h"
#include "MarkdownUI/Layout/HeightIndex.h"
#include "MarkdownUI/Layout/PlainText.h"
#include "MarkdownUI/Layout/SteadyImages.h"
#include "MarkdownUI/Layout/TextPosition.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quillmoth::markdown {

/// The units of a document, their heights, and the boxes of those that are laid out.
class DocumentState {
public:
    DocumentState(TextEngine& engine, ImageSource& images, const Theme& theme);

    void setContent(MarkdownContent content);
    void setOptions(LayoutOptions options);
    void setHighlighter(const CodeSyntaxHighlighter* highlighter);
    /// See DocumentLayout.
    void imagesChanged(std::span<TextRange> kept);

    /// See DocumentLayout.
    double ensureLaidOut(double top, double bottom);

    /// The box of a unit, laid out if it is not.
    const Box& box(std::size_t unit);

    /// Of the unit's content, below its gap.
    [[nodiscard]] double contentTop(std::size_t unit) const {
        return heights_.top(unit) + flow_.units[unit].gap;
    }

    [[nodiscard]] const DocumentFlow& flow() const { return flow_; }

    [[nodiscard]] const HeightIndex& heights() const { return heights_; }

    [[nodiscard]] const LayoutOptions& options() const { return options_; }

    [[nodiscard]] const MarkdownContent& content() const { return content_; }

    [[nodiscard]] const Theme& theme() const { return theme_; }

    [[nodiscard]] const GroupState& group(std::size_t index) const { return groups_[index]; }

    [[nodiscard]] LayoutContext context() const;

    /// Requests each image that it is called for, as ImageSource does.
    [[nodiscard]] IsImageLoaded imageRequest() const { return requestTo(images_); }

    [[nodiscard]] bool isMissingImages() const { return images_.isMissingAny(); }

    [[nodiscard]] bool isHeightExact() const { return exactCount_ == flow_.units.size(); }

    [[nodiscard]] double usedWidth() const { return usedWidth_; }

    /// The wider of the two labels of a copy button, in its font.
    [[nodiscard]] Size copyLabelSize();

    // What the reader does to a block; kept while the block stays at its place in the document.
    std::vector<bool> justCopy;   ///< by code block
    std::vector<double> scrolled; ///< by group, from where its content starts
    /// Filled by who needs them, emptied by every change.
    std::optional<std::string> documentText;
    std::vector<std::size_t> documentBlockStarts;

private:
    [[nodiscard]] IsImageLoaded requestTo(ImageSource& images) const;
    void rebuildFlow();
    void forgetLayout();
    void layOut(std::size_t unit);
    void handLastLineOn(std::size_t unit, Box& box);
    void dropFarFrom(double top, double bottom);
    void dropGroupTexts(std::size_t firstUnit, std::size_t endUnit);

    TextEngine& engine_;
    ImageSource& source_;
    mutable SteadyImages images_; ///< a request changes it
    const Theme& theme_;
    const CodeSyntaxHighlighter* highlighter_ = nullptr;
    MarkdownContent content_;
    std::optional<Blocks> withoutSchemeImages_; ///< instead of the content's, where it has such images
    LayoutOptions options_;
    InlineEnvironment environment_;
    MarkerMeasure measure_;
    DocumentFlow flow_;
    std::vector<GroupState> groups_;
    HeightIndex heights_; ///< with gaps
    std::vector<std::unique_ptr<Box>> boxes_;
    std::vector<bool> isExact_;
    std::size_t exactCount_ = 0;
    std::size_t liveBegin_ = 0; ///< all boxes are in [liveBegin_, liveEnd_)
    std::size_t liveEnd_ = 0;
    bool hasMovedParts_ = false;
    double usedWidth_ = 0;
    std::optional<Size> copyLabelSize_;
};

} // namespace quillmoth::markdown
