#pragma once

#include "MarkdownUI/Layout/PlainTextLayout.h"
#include "MarkdownUI/Layout/TextEngine.h"

#include <memory>
#include <string>
#include <vector>

namespace quillmoth::markdown {

/// Some lines of one paragraph. Its height counts the spacing below its last line.
struct TextPiece {
    std::size_t begin = 0;
    std::size_t end = 0; ///< the line feed that ends the paragraph included
    bool endsParagraph = false;
    bool isExact = false; ///< its height; else estimated
    bool isDirectionKnown = false;
    TextDirection direction = TextDirection::leftToRight;
    double height = 0;
    std::size_t lineCount = 0; ///< of `shaped`, those that count
    std::unique_ptr<const AttributedText> text;
    std::unique_ptr<ShapedText> shaped; ///< null where it has not been in sight for long
};

/// A growing text in pieces. The last piece is always shaped, and takes what is appended.
class PlainTextPieces {
public:
    explicit PlainTextPieces(TextEngine& engine) : engine_(engine) { reset({}); }

    void setOptions(const PlainTextOptions& options);
    void reset(std::string text);
    void append(std::string_view added);

    [[nodiscard]] const std::string& text() const { return text_; }

    [[nodiscard]] std::size_t count() const { return pieces_.size(); }

    /// Shaped if it is not.
    const TextPiece& piece(std::size_t index);
    [[nodiscard]] double top(std::size_t index) const;
    [[nodiscard]] double totalHeight() const;
    /// Whether every height is that of the lines themselves.
    [[nodiscard]] bool isExact() const;
    /// The piece at `y`: the first above all, the last below.
    [[nodiscard]] std::size_t pieceAt(double y) const;
    [[nodiscard]] std::size_t pieceOfOffset(std::size_t offset) const;

    /// Forgets the lines of pieces outside [begin, end), the last piece's excepted.
    void dropOutside(std::size_t begin, std::size_t end);

    [[nodiscard]] double usedWidth() const { return usedWidth_; }

private:
    void layOutAll();
    void addPieces(std::size_t begin, std::size_t end);
    void splitOffLastLine();
    void joinSettledLines();
    void openPiece(std::size_t begin, bool sameParagraph);
    void shape(std::size_t index);
    void handLastLineOn(std::size_t index);
    void estimate(TextPiece& piece);
    void setHeight(std::size_t index, double height);

    TextEngine& engine_;
    PlainTextOptions options_;
    std::string text_;
    std::vector<TextPiece> pieces_;
    mutable std::vector<double> tops_; ///< of the first `validTops_` pieces
    mutable std::size_t validTops_ = 0;
    std::size_t settledLines_ = 0;  ///< pieces of one line at the end of the list, before the last
    std::vector<std::size_t> live_; ///< the shaped pieces but for the last one
    double usedWidth_ = 0;
};

} // namespace quillmoth::markdown
