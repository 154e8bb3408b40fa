#pragma once

#include "MarkdownUI/Style/AttributedText.h"
#include "MarkdownUI/Style/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace quillmoth::markdown {

enum class TextDirection : std::uint8_t { leftToRight, rightToLeft };

/// Relative to the direction: leading is left in left-to-right text.
enum class TextAlignment : std::uint8_t { leading, center, trailing };

struct TextOptions {
    static constexpr double kUnlimitedWidth = std::numeric_limits<double>::infinity();

    double width = kUnlimitedWidth; ///< lines wrap at it; a word that is longer is broken
    double lineSpacing = 0;         ///< between two lines, not below the last
    TextDirection direction = TextDirection::leftToRight;
    /// Within `width`; of no effect where the width is unlimited: lines start at x 0 then.
    TextAlignment alignment = TextAlignment::leading;
    Font font; ///< of empty text, and of runs without one

    bool operator==(const TextOptions&) const = default;
};

/// One line of a shaped text, in the coordinates of that text (origin at its top left corner).
struct TextLine {
    std::size_t begin = 0; ///< bytes [begin, end) of the text; a line feed that ends the line is outside
    std::size_t end = 0;
    double x = 0;       ///< left edge of the ink's advance
    double top = 0;     ///< top of the ascent
    double ascent = 0;  ///< the baseline is at top + ascent
    double descent = 0; ///< bottom is top + ascent + descent
    double advance = 0; ///< width, blanks at a wrapped end excluded

    [[nodiscard]] double height() const { return ascent + descent; }

    bool operator==(const TextLine&) const = default;
};

/// A text in lines. Made by a TextEngine, owned by the layout, painted by who knows the engine. Offsets are
/// bytes of the shaped text and always at the border of a character; any offset is accepted and moved there.
class ShapedText {
public:
    virtual ~ShapedText() = default;

    /// At least one line, also for empty text; a final line feed is followed by an empty line.
    [[nodiscard]] virtual const std::vector<TextLine>& lines() const = 0;

    /// The caret position nearest to x in the line `line`.
    [[nodiscard]] virtual std::size_t offsetAt(std::size_t line, double x) const = 0;

    /// The x of the caret before the character at `offset` in the line `line`, which holds that offset or
    /// ends there.
    [[nodiscard]] virtual double caretX(std::size_t line, std::size_t offset) const = 0;

    /// Where [begin, end) stands, a rectangle a stretch of one direction, each as high as its line.
    [[nodiscard]] virtual std::vector<Rect> rectanglesOf(std::size_t begin, std::size_t end) const = 0;
};

struct FontMetrics {
    double ascent = 0;
    double descent = 0;
    double averageAdvance = 0; ///< for estimates; the exact advance in a monospaced font
};

/// Measures text: all that the layout knows of fonts. Main thread.
class TextEngine {
public:
    virtual ~TextEngine() = default;

    /// The runs of `text` have `font` set; a run with `link`
    /// and no `foregroundColor` is in the colour of links, other runs with none in that of text. "\n" ends a
    /// line. `text` outlives the result.
    /// A run with an attachment is one U+FFFC as large as the attachment, standing on the baseline.
    [[nodiscard]] virtual std::unique_ptr<ShapedText> shape(const AttributedText& text,
                                                            const TextOptions& options) = 0;

    [[nodiscard]] virtual FontMetrics metricsOf(const Font& font) = 0;
};

} // namespace quillmoth::markdown
