#include "MarkdownUI/Qt/QtTextEngine.h"

#include "MarkdownUI/Qt/QtShapedText.h"
#include "MarkdownUI/Qt/UTF16Index.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace quillmoth::markdown {

namespace {

constexpr char16_t kAttachment = 0xFFFC;
constexpr double kTabCharacters = 4;
constexpr char16_t kStandIn = 0x4E00; // lines may break before and behind it, as around an image

const Font& fontOf(const AttributeContainer& attributes) {
    static const Font kDefault;
    return attributes.font ? *attributes.font : kDefault;
}

bool isDecorated(const AttributeContainer& attributes) {
    return attributes.underlineStyle || attributes.strikethroughStyle || attributes.backgroundColor ||
           attributes.attachment;
}

/// White space shows no colour: it can share the format of what stands before it, where only the colour
/// differs.
bool looksLike(const AttributedText& text, const AttributedText::Run& blank,
               const AttributedText::Run& before) {
    return text.textOf(blank).find_first_not_of(" \t\r\n") == std::string_view::npos &&
           !isDecorated(blank.attributes) && !isDecorated(before.attributes) &&
           fontOf(blank.attributes) == fontOf(before.attributes);
}

bool needsFormat(const AttributeContainer& attributes, const Font& base) {
    return !(fontOf(attributes) == base) || attributes.foregroundColor || attributes.backgroundColor ||
           attributes.strikethroughStyle || attributes.underlineStyle || attributes.kern ||
           attributes.tracking || attributes.attachment || attributes.link;
}

bool isBodyColor(const Color& color) {
    return color.semantic() != nullptr && *color.semantic() == SemanticColor::text;
}

} // namespace

QtTextEngine::QtTextEngine(MarkdownPalette palette, FontCache fonts)
    : palette_(std::move(palette)), fonts_(std::move(fonts)) {}

std::unique_ptr<ShapedText> QtTextEngine::shape(const AttributedText& text, const TextOptions& options) {
    const Font base = text.runs().empty() ? options.font : fontOf(text.runs().front().attributes);
    QtShapedText::Input input;
    input.text = UTF16Index(text.text());
    input.layoutText = input.text.text();
    input.layoutText.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
    input.font = fonts_.fontOf(base);
    input.formats = formatsOf(text, base, input.text, input.layoutText);
    input.options = options;
    input.tabWidth = kTabCharacters * metricsOf(base).averageAdvance;
    auto shaped = std::make_unique<QtShapedText>(std::move(input), [&](std::size_t begin, std::size_t end) {
        return heightOf(text, base, begin, end);
    });
    linesShaped_ += shaped->lines().size();
    return shaped;
}

QtTextEngine::Formats QtTextEngine::formatsOf(const AttributedText& text, const Font& base,
                                              const UTF16Index& index, QString& layoutText) {
    Formats formats;
    FormatMemory known;
    for (const AttributedText::Run& run : text.runs()) {
        const int begin = index.utf16Of(run.begin);
        const int length = index.utf16Of(run.end()) - begin;
        const bool touches = !formats.isEmpty() && formats.back().start + formats.back().length == begin;
        if (touches && looksLike(text, run, *std::prev(&run))) {
            formats.back().length += length;
            continue;
        }
        if (run.attributes->attachment) {
            layoutText.replace(begin, 1, QChar(kStandIn));
            formats.push_back({begin, length, attachmentFormat(*run.attributes->attachment)});
        } else if (fontOf(run.attributes).hasMonospacedDigits) {
            appendDigits(run.attributes, base, begin, layoutText.mid(begin, length), formats);
        } else if (needsFormat(run.attributes, base)) {
            formats.push_back({begin, length, knownFormatOf(run.attributes, base, known)});
        }
    }
    return formats;
}

/// Runs of code share a few attributes; to make a format is dear.
QTextCharFormat QtTextEngine::knownFormatOf(const AttributeContainer& attributes, const Font& base,
                                            FormatMemory& known) {
    const auto found = std::find_if(known.begin(), known.end(),
                                    [&attributes](const auto& entry) { return entry.first == &attributes; });
    if (found != known.end())
        return found->second;
    const QTextCharFormat format = formatOf(attributes, base);
    if (known.size() < known.capacity())
        known.append({&attributes, format});
    return format;
}

QTextCharFormat QtTextEngine::formatOf(const AttributeContainer& attributes, const Font& base) {
    QTextCharFormat format;
    const Font& font = fontOf(attributes);
    if (!(font == base)) {
        QTextCharFormat& known = fontFormats_[font];
        if (known.isEmpty())
            known.setFont(fonts_.fontOf(font));
        format = known;
    }
    if (const double spacing = attributes.tracking.value_or(attributes.kern.value_or(0)); spacing != 0)
        format.setFont(fonts_.spacedFontOf(font, spacing));
    if (attributes.foregroundColor && !isBodyColor(*attributes.foregroundColor))
        format.setForeground(palette_.resolve(*attributes.foregroundColor));
    if (attributes.link && !attributes.foregroundColor)
        format.setForeground(palette_.link);
    if (attributes.backgroundColor)
        format.setBackground(palette_.resolve(*attributes.backgroundColor));
    // a font property that is set, to false even, makes Qt build a font for each run
    if (attributes.strikethroughStyle)
        format.setFontStrikeOut(true);
    if (attributes.underlineStyle)
        format.setFontUnderline(true);
    return format;
}

/// Qt cannot switch a font's tabular figures on: each digit gets the room of the widest one, half of what it
/// lacks on each side.
void QtTextEngine::appendDigits(const AttributeContainer& attributes, const Font& base, int begin,
                                const QString& text, Formats& formats) {
    const QFontMetricsF metrics(fonts_.fontOf(fontOf(attributes)));
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    const auto halfMissing = [&](int offset) {
        const bool isDigit = offset < text.size() && text[offset] >= u'0' && text[offset] <= u'9';
        return isDigit ? (widest - metrics.horizontalAdvance(text[offset])) / 2 : 0;
    };
    for (int offset = 0; offset < text.size(); ++offset) {
        QTextCharFormat format = formatOf(attributes, base);
        if (const double spacing = halfMissing(offset) + halfMissing(offset + 1); spacing > 0)
            format.setFont(fonts_.spacedFontOf(fontOf(attributes), spacing));
        formats.push_back({begin + offset, 1, format});
    }
}

/// An ideograph one pixel high with as much space behind it as the image is wide. The image itself is painted
/// elsewhere.
QTextCharFormat QtTextEngine::attachmentFormat(const ImageAttachment& attachment) {
    Font font;
    font.size = 1;
    QTextCharFormat format;
    const double advance = QFontMetricsF(fonts_.fontOf(font)).horizontalAdvance(QChar(kStandIn));
    format.setFont(fonts_.spacedFontOf(font, attachment.size.width - advance));
    format.setForeground(QColor(Qt::transparent));
    return format;
}

std::pair<double, double> QtTextEngine::heightOf(const AttributedText& text, const Font& base,
                                                 std::size_t begin, std::size_t end) {
    if (text.runs().empty()) {
        const FontMetrics metrics = metricsOf(base);
        return {metrics.ascent, metrics.descent};
    }
    const auto endsBefore = [](const AttributedText::Run& run, std::size_t offset) {
        return run.end() <= offset;
    };
    auto run = std::lower_bound(text.runs().begin(), text.runs().end(), begin, endsBefore);
    if (run == text.runs().end())
        --run; // the empty line behind a final line feed
    std::pair<double, double> height{0, 0};
    do {
        const FontMetrics metrics = metricsOf(fontOf(run->attributes));
        height.first = std::max(height.first, metrics.ascent);
        height.second = std::max(height.second, metrics.descent);
        if (run->attributes->attachment)
            height.first = std::max(height.first, run->attributes->attachment->size.height);
        ++run;
    } while (run != text.runs().end() && run->begin < end);
    return height;
}

FontMetrics QtTextEngine::metricsOf(const Font& font) {
    const auto known = metrics_.find(font);
    if (known != metrics_.end())
        return known->second;
    const QFontMetricsF metrics(fonts_.fontOf(font));
    const bool isFixed = font.isMonospaced;
    const FontMetrics result{.ascent = std::round(metrics.ascent()),
                             .descent = std::round(metrics.descent()),
                             .averageAdvance = isFixed ? metrics.horizontalAdvance(QLatin1Char('0'))
                                                       : metrics.averageCharWidth()};
    return metrics_.emplace(font, result).first->second;
}

} // namespace quillmoth::markdown
