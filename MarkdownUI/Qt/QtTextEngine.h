#pragma once

#include "MarkdownUI/Layout/TextEngine.h"
#include "MarkdownUI/Qt/FontCache.h"
#include "MarkdownUI/Qt/MarkdownPalette.h"

#include <QTextLayout>
#include <QVarLengthArray>

#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillmoth::markdown {

/// Shapes text by QTextLayout, in the desktop's fonts. Every ShapedText that it gives is a QtShapedText. One
/// serves all documents of a window. Main thread.
class QtTextEngine : public TextEngine {
public:
    /// The colours of text are set when it is shaped.
    explicit QtTextEngine(MarkdownPalette palette, FontCache fonts = FontCache());

    [[nodiscard]] std::unique_ptr<ShapedText> shape(const AttributedText& text,
                                                    const TextOptions& options) override;
    [[nodiscard]] FontMetrics metricsOf(const Font& font) override;

    [[nodiscard]] FontCache& fonts() { return fonts_; }

    /// How many texts, and lines of them, have been shaped so far: what laziness saves is counted by it.
    [[nodiscard]] std::size_t linesShaped() const { return linesShaped_; }

private:
    struct Hash {
        std::size_t operator()(const Font& font) const { return hashValue(font); }
    };

    using Formats = QList<QTextLayout::FormatRange>;
    /// The formats of the first few different attributes of a text.
    using FormatMemory = QVarLengthArray<std::pair<const AttributeContainer*, QTextCharFormat>, 16>;

    [[nodiscard]] Formats formatsOf(const AttributedText& text, const Font& base,
                                    const class UTF16Index& index, QString& layoutText);
    [[nodiscard]] QTextCharFormat knownFormatOf(const AttributeContainer& attributes, const Font& base,
                                                FormatMemory& known);
    [[nodiscard]] QTextCharFormat formatOf(const AttributeContainer& attributes, const Font& base);
    void appendDigits(const AttributeContainer& attributes, const Font& base, int begin, const QString& text,
                      Formats& formats);
    [[nodiscard]] QTextCharFormat attachmentFormat(const ImageAttachment& attachment);
    [[nodiscard]] std::pair<double, double> heightOf(const AttributedText& text, const Font& base,
                                                     std::size_t begin, std::size_t end);

    MarkdownPalette palette_;
    FontCache fonts_;
    std::unordered_map<Font, FontMetrics, Hash> metrics_;
    std::unordered_map<Font, QTextCharFormat, Hash> fontFormats_;
    std::size_t linesShaped_ = 0;
};

} // namespace quillmoth::markdown
